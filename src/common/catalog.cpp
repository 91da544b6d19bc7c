// SPDX-License-Identifier: Apache-2.0
#include "common/catalog.h"

#include "common/text.h"
#include "common/text_key.h"

namespace kv {

std::string_view typeName(ColumnType type) noexcept {
  switch (type) {
    case ColumnType::Boolean: return "YesNo";
    case ColumnType::Int16: return "Short";
    case ColumnType::Int32: return "Long";
    case ColumnType::Single: return "Single";
    case ColumnType::Double: return "Double";
    case ColumnType::Date: return "DateTime";
    case ColumnType::Text: return "Text";
    case ColumnType::Memo: return "Memo";
  }
  return "";
}

std::optional<std::size_t> TableInfo::find(std::string_view column) const {
  for (std::size_t i = 0; i < columns.size(); ++i)
    if (equalNoCase(columns[i].name, column)) return i;
  return std::nullopt;
}

const ColumnInfo* TableInfo::counterColumn() const noexcept {
  for (const auto& column : columns)
    if (column.counter) return &column;
  return nullptr;
}

bool sameTable(const TableInfo& a, const TableInfo& b) {
  return a.name == b.name && a.columns == b.columns && a.key == b.key &&
         a.hiddenKey == b.hiddenKey && a.columnsSoFar == b.columnsSoFar;
}

Catalog::Catalog(std::vector<TableInfo> tables) : tables_(std::move(tables)) {
  for (std::size_t i = 0; i < tables_.size(); ++i) byName_.emplace(foldKey(tables_[i].name), i);
}

const TableInfo* Catalog::find(std::string_view table) const {
  const auto at = byName_.find(foldKey(table));
  return at == byName_.end() ? nullptr : &tables_[at->second];
}

}  // namespace kv
