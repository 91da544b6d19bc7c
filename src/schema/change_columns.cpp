// SPDX-License-Identifier: Apache-2.0
#include "schema/change_columns.h"

#include "common/error.h"
#include "common/text.h"
#include "jet/emit/schema.h"
#include "jet/emit/texts.h"
#include "schema/register_schema.h"

namespace kv {

void changeColumns(const std::shared_ptr<Database>& database, const std::string& table,
                   const std::vector<ColumnInfo>& changes) {
  const TableInfo* known = database->catalog()->find(table);
  if (known == nullptr) raise(kInvalidCall, table);
  TableInfo before = *known;
  for (const auto& made : registerTables())  // catalogs read from a database do not list indexes
    if (equalNoCase(made.name, before.name)) before.indexes = made.indexes;
  TableInfo after = before;
  for (const auto& change : changes) {
    const auto place = after.find(change.name);
    if (!place) raise(kNoSuchItem, change.name);
    after.columns[*place].type = change.type;
    after.columns[*place].size = change.size;
    after.columns[*place].initial.clear();
  }
  const auto& dialect = database->dialect();
  auto& engine = database->engine();
  // The counter may be ahead of the rows: numbers that were given out once are not given out again.
  const auto next = engine.reserveCounter(before, 1);
  TableInfo temporary = after;
  temporary.name = "kv_new_" + before.name;
  temporary.indexes.clear();
  for (const auto& sql : jet::emitCreateTable(temporary, dialect)) engine.execute(sql);
  engine.execute(jet::emitCopyTable(before, temporary, dialect));
  engine.execute("DROP TABLE " + jet::quotedName(before.name));
  engine.execute("ALTER TABLE " + jet::quotedName(temporary.name) + " RENAME TO " +
                 jet::quotedName(before.name));
  for (const auto& sql : jet::emitCreateIndexes(after, dialect)) engine.execute(sql);
  const auto reached = engine.reserveCounter(after, 1);
  if (reached < next) (void)engine.reserveCounter(after, next - reached - 1);
  database->renew(std::make_shared<const Catalog>(withSecondNames(engine.catalog())));
}

}  // namespace kv
