// SPDX-License-Identifier: Apache-2.0
#include "recordset/shape_columns.h"

namespace kv {

namespace {

// Larger than the number of columns any table has; tells columns of different tables apart.
constexpr int kMostColumns = 1024;

}  // namespace

std::shared_ptr<const std::vector<SourceColumn>> sharedColumns(StatementShape& shape) {
  if (shape.columns) return shape.columns;
  const jet::BoundSelect& s = *shape.bound.select;
  std::vector<SourceColumn> columns;
  for (const auto& output : s.outputs) {
    SourceColumn column{.name = output.name,
                        .type = output.type,
                        .size = output.size,
                        .updatable = s.keyed && output.table >= 0,
                        .nullable = s.keyed || output.type != ColumnType::Boolean};
    if (s.keyed && output.table >= 0) {
      const auto& table = s.scope[static_cast<std::size_t>(output.table)];
      const auto& info = table.info->columns[static_cast<std::size_t>(output.column)];
      const auto stored =
          info.stands.empty() ? output.column : static_cast<int>(*table.info->find(info.stands));
      column.counter = info.counter;
      column.updatable = !info.counter;
      column.nullable = table.optional || (info.type != ColumnType::Boolean && !info.counter);
      column.storage = output.table * kMostColumns + stored;
    }
    columns.push_back(std::move(column));
  }
  shape.columns = std::make_shared<const std::vector<SourceColumn>>(std::move(columns));
  return shape.columns;
}

}  // namespace kv
