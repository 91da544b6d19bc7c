// SPDX-License-Identifier: Apache-2.0
#include "jet/emit/schema.h"

#include <fmt/format.h>

#include "jet/emit/texts.h"

namespace kv::jet {

std::vector<std::string> emitCreateTable(const TableInfo& table, const Dialect& dialect) {
  std::vector<std::string> columns;
  if (table.hiddenKey) columns.push_back(dialect.hiddenKeyDefinition(table.key));
  for (const auto& c : table.columns)
    if (c.stands.empty()) columns.push_back(dialect.columnDefinition(c));
  std::vector<std::string> out;
  out.push_back(fmt::format("CREATE TABLE {} ({})", quotedName(table.name), joinTexts(columns)));
  for (auto& sql : emitCreateIndexes(table, dialect)) out.push_back(std::move(sql));
  return out;
}

std::vector<std::string> emitCreateIndexes(const TableInfo& table, const Dialect& dialect) {
  std::vector<std::string> out;
  for (const auto& index : table.indexes) {
    std::vector<std::string> keys;
    std::string name;
    switch (index.kind) {
      case IndexInfo::Kind::Fold: name = "kv_fold_" + table.name; break;
      case IndexInfo::Kind::Order: name = "kv_order_" + table.name; break;
      case IndexInfo::Kind::Plain: name = "kv_plain_" + table.name; break;
    }
    for (const auto& c : index.columns) {
      name += "_" + c;
      const auto place = table.find(c);
      const bool text = place && isTextType(table.columns[*place].type);
      switch (index.kind) {
        case IndexInfo::Kind::Fold:
          keys.push_back(text ? dialect.fold(quotedName(c)) : quotedName(c));
          break;
        case IndexInfo::Kind::Order:
          for (auto& key : dialect.order(quotedName(c)))
            keys.push_back(std::move(key) + dialect.direction(false));
          break;
        case IndexInfo::Kind::Plain: keys.push_back(quotedName(c)); break;
      }
    }
    const bool order = index.kind == IndexInfo::Kind::Order;
    out.push_back(fmt::format("CREATE INDEX {} ON {} ({}{})", quotedName(name),
                              quotedName(table.name), joinTexts(keys),
                              order ? dialect.orderIndexTail(table) : std::string()));
  }
  return out;
}

std::string emitCopyTable(const TableInfo& from, const TableInfo& to, const Dialect& dialect) {
  std::vector<std::string> names;
  std::vector<std::string> values;
  if (to.hiddenKey) {
    names.push_back(quotedName(to.key));
    values.push_back(quotedName(from.key));
  }
  for (std::size_t i = 0; i < to.columns.size(); ++i) {
    if (!to.columns[i].stands.empty()) continue;
    const std::string name = quotedName(to.columns[i].name);
    names.push_back(name);
    values.push_back(to.columns[i].type == from.columns[i].type
                         ? name
                         : dialect.convert(name, from.columns[i].type, to.columns[i].type));
  }
  return fmt::format("INSERT INTO {} ({}) SELECT {} FROM {} ORDER BY {}", quotedName(to.name),
                     joinTexts(names), joinTexts(values), quotedName(from.name),
                     quotedName(from.key));
}

}  // namespace kv::jet
