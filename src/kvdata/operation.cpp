#include "kvdata/operation.h"

#include <string>
#include <vector>

#include "common/error.h"
#include "common/text_key.h"
#include "kvdata/jet/emitter.h"

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

void lockRows(const Ref<kvConnection>& connection, std::string_view table, std::string_view column,
              const SqlValue& value) {
  const auto keeper = connection->database()->keeperOf(table);
  Database& database = keeper ? *keeper : *connection->database();
  database.joinTransactions();
  const TableInfo* known = database.catalog()->find(table);
  if (known == nullptr) raise(kUnknownTable, table);
  const auto place = known->find(column);
  const std::string sql =
      jet::emitLockRows(*known, place ? &known->columns[*place] : nullptr, database.dialect());
  if (sql.empty()) return;
  auto& statement = database.rowStatement(sql);
  if (const auto* text = std::get_if<std::string>(&value))
    statement.bind(1, foldKey(*text));
  else if (place)
    statement.bind(1, value);
  std::vector<std::int64_t> locked;
  statement.fetchKeys(locked, 1);
}

}  // namespace kv
