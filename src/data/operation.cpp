// SPDX-License-Identifier: Apache-2.0
#include "data/operation.h"

#include <string>
#include <vector>

#include "common/error.h"
#include "common/text_key.h"
#include "jet/emit/rows.h"

namespace kv {

Operation::Operation(const Ref<kvConnection>& connection)
    : database_(*connection->database()), transaction_(database_, engine::Access::Write) {}

Operation::Operation(const Ref<kvConnection>& connection, std::string_view table)
    : Operation(connection) {
  lockRows(connection, table);
}

Operation::Operation(const Ref<kvConnection>& connection, std::string_view table,
                     std::string_view column, const SqlValue& value)
    : Operation(connection) {
  lockRows(connection, table, column, value);
}

namespace {

// The database that keeps a table, in the transaction that is open.
std::shared_ptr<Database> keeperOf(const Ref<kvConnection>& connection, std::string_view table) {
  auto keeper = connection->database()->keeperOf(table);
  if (!keeper) keeper = connection->database();
  keeper->joinTransactions();
  return keeper;
}

const TableInfo& known(const Database& database, std::string_view table) {
  const TableInfo* found = database.catalog()->find(table);
  if (found == nullptr) raise(kUnknownTable, table);
  return *found;
}

const ColumnInfo& known(const TableInfo& table, std::string_view column) {
  const auto place = table.find(column);
  if (!place) raise(kUnknownName, column);
  return table.columns[*place];
}

// Runs a statement of the emitter's that locks the rows it finds.
void lock(engine::Statement& statement) {
  std::vector<std::int64_t> locked;
  statement.fetchKeys(locked, 1);
}

}  // namespace

void lockRows(const Ref<kvConnection>& connection, std::string_view table, std::string_view column,
              const SqlValue& value) {
  const auto keeper = keeperOf(connection, table);
  Database& database = *keeper;
  const TableInfo& rows = known(database, table);
  const ColumnInfo* by = column.empty() ? nullptr : &known(rows, column);
  const std::string sql = jet::emitLockRows(rows, by, database.dialect());
  if (sql.empty()) return;
  auto& statement = database.rowStatement(sql);
  if (const auto* text = std::get_if<std::string>(&value))
    statement.bind(1, foldKey(*text));
  else if (by != nullptr)
    statement.bind(1, value);
  lock(statement);
}

void lockLinkedRows(const Ref<kvConnection>& connection, std::string_view table,
                    std::string_view common, std::string_view link, std::string_view column,
                    std::string_view value) {
  const auto keeper = keeperOf(connection, table);
  Database& database = *keeper;
  const TableInfo& rows = known(database, table);
  const TableInfo& linked = known(database, link);
  const std::string sql = jet::emitLockLinkedRows(rows, known(rows, common), linked,
                                                  known(linked, column), database.dialect());
  if (sql.empty()) return;
  auto& statement = database.rowStatement(sql);
  statement.bind(1, foldKey(value));
  lock(statement);
}

}  // namespace kv
