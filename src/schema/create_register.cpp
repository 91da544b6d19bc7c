// SPDX-License-Identifier: Apache-2.0
#include "schema/create_register.h"

#include <fmt/format.h>

#include <algorithm>
#include <random>

#include "data/connection_string.h"
#include "data/table_value.h"
#include "jet/emit/schema.h"
#include "schema/create_tables.h"
#include "schema/register_schema.h"

namespace kv {

namespace {

constexpr int kOwnerRights = 21;
constexpr int kProgramOptions = 11;
constexpr int kUserFields = 12;

// Names this register in the actions it sends; two registers must not have the same.
std::string randomName() {
  std::random_device device;
  return fmt::format("{:08X}{:08X}", device(), device());
}

template <class Fill>
void addRow(const std::shared_ptr<Database>& database, std::string_view table, Fill fill) {
  const auto rs = openOwn(database, "Select * From [" + std::string(table) + "]");
  rs->AddNew();
  fill(*rs);
  rs->Update();
}

void firstValues(const std::shared_ptr<Database>& database) {
  addRow(database, kConfigTable, [](Recordset& rs) {
    rs.Fields("DatabaseVersion")->Value(kLayoutVersion);
    rs.Fields("Version")->Value(kUserDataVersion);
    rs.Fields("OwnerRights")->Value(std::string(kOwnerRights, '0'));
    rs.Fields("ProgramOptions")->Value(std::string(kProgramOptions, '0'));
    rs.Fields("DBID")->Value(randomName());
    rs.Fields("Originator")->Value(0);
    rs.Fields("Document")->Value("Document");
    rs.Fields("Revision")->Value("Revision");
  });
  addRow(database, "UserConfig", [](Recordset& rs) {
    for (int n = 0; n < kUserFields; ++n) rs.Fields(fmt::format("TypeUser{:02}", n))->Value(0);
  });
  for (const char* table : {"DocumentConfig", "ManualConfig", "RevisionConfig"})
    addRow(database, table, [](Recordset&) {});
}

}  // namespace

Ref<kvConnection> createWithTables(
    const std::string& ConnectionString, const std::vector<TableInfo>& tables,
    const std::function<void(const std::shared_ptr<Database>&)>& fill) {
  engine::OpenOptions options = parseConnectionString(ConnectionString);
  options.create = true;
  // What is not ours is not ours to discard: an opening that fails has made nothing.
  auto engine = engine::open(options);
  try {
    auto database =
        std::make_shared<Database>(std::move(engine), std::make_shared<const Catalog>(tables));
    Transaction transaction(*database, engine::Access::Write);
    for (const auto& table : tables)
      for (const auto& sql : jet::emitCreateTable(table, database->dialect()))
        database->engine().execute(sql);
    database->engine().markAsRegister();
    fill(database);
    transaction.commit();
    // As any connection knows it: what the engine adds to it tells of changes.
    database->renew(std::make_shared<const Catalog>(withSecondNames(database->engine().catalog())));
    return makeRef<kvConnection>(ConnectionString, std::move(database));
  } catch (...) {
    engine::discard(options);
    throw;
  }
}

Ref<kvConnection> createRegister(
    const std::string& ConnectionString,
    const std::function<void(const std::shared_ptr<Database>&)>& fill) {
  return createWithTables(ConnectionString, registerTables(),
                          [&](const std::shared_ptr<Database>& database) {
                            firstValues(database);
                            if (fill) fill(database);
                          });
}

Ref<kvConnection> createUserDatabase(
    const std::string& ConnectionString, std::vector<TableInfo> tables,
    const std::function<void(const std::shared_ptr<Database>&)>& fill) {
  tables.insert(tables.begin(), userConfigTable());
  return createWithTables(ConnectionString, tables, [&](const std::shared_ptr<Database>& database) {
    addRow(database, kConfigTable,
           [](Recordset& rs) { rs.Fields("Version")->Value(kUserDataVersion); });
    fill(database);
  });
}

Ref<kvConnection> createUserDatabase(const std::string& ConnectionString) {
  std::vector<TableInfo> tables;
  for (const auto& table : registerTables())
    if (std::find(userTables().begin(), userTables().end(), table.name) != userTables().end())
      tables.push_back(table);
  return createUserDatabase(ConnectionString, std::move(tables),
                            [](const std::shared_ptr<Database>&) {});
}

}  // namespace kv
