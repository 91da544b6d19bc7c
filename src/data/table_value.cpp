// SPDX-License-Identifier: Apache-2.0
#include "data/table_value.h"

#include "common/error.h"
#include "jet/errors.h"

namespace kv {

namespace {

std::string selectOf(const Database& database, const std::string& table, const std::string& key,
                     const std::string& where) {
  std::string sql = "Select [" + columnOf(database, table, key) + "] From [" + table + "]";
  if (!where.empty()) sql += " Where " + where;
  return sql;
}

}  // namespace

Ref<Recordset> openOwn(const std::shared_ptr<Database>& database, const std::string& sql,
                       std::int32_t lockType) {
  return Recordset::open(database, database->prepare(sql), kKeyset, lockType);
}

std::string columnOf(const Database& database, const std::string& table, const std::string& key) {
  const auto keeper = database.keeperOf(table);
  const TableInfo* info = (keeper ? *keeper : database).catalog()->find(table);
  if (info == nullptr) jet::fail(kUnknownTable, jet::kNoTable, table, {0, table.size()});
  const auto place = info->find(key);
  if (!place) raise(kNoSuchItem, key);
  return info->columns[*place].name;
}

Variant tableValue(const std::shared_ptr<Database>& database, const std::string& table,
                   const std::string& key, const std::string& where) {
  const auto rs = openOwn(database, selectOf(*database, table, key, where));
  if (rs->Eof()) return {};
  Variant value = rs->Fields(0)->Value();
  return value.isNull() ? Variant() : value;
}

void storeTableValue(const std::shared_ptr<Database>& database, const std::string& table,
                     const std::string& key, const Variant& value, const std::string& where) {
  const auto rs = openOwn(database, selectOf(*database, table, key, where));
  rs->Fields(0)->Value(value);
  rs->Update();
}

}  // namespace kv
