// SPDX-License-Identifier: Apache-2.0
#include "jet/emit/rows.h"

#include <fmt/format.h>

#include <algorithm>
#include <vector>

#include "jet/emit/texts.h"

namespace kv::jet {

namespace {

std::string insertRows(const TableInfo& table, const std::vector<std::string>& names,
                       std::size_t rows, const Dialect& dialect) {
  int next = 1;
  std::string tuples;
  for (std::size_t r = 0; r < rows; ++r) {
    tuples += r == 0 ? "(" : ", (";
    for (std::size_t i = 0; i < names.size(); ++i)
      tuples.append(i == 0 ? "" : ", ").append(dialect.parameter(next++));
    tuples += ')';
  }
  return fmt::format("INSERT INTO {} ({}) VALUES {}", quotedName(table.name), joinTexts(names),
                     tuples);
}

void addNames(const TableInfo& table, std::span<const int> columns,
              std::vector<std::string>& names) {
  for (const int c : columns)
    names.push_back(quotedName(table.columns[static_cast<std::size_t>(c)].name));
}

}  // namespace

std::string emitInsertRow(const TableInfo& table, std::span<const int> columns,
                          const Dialect& dialect) {
  std::vector<std::string> names;
  std::vector<std::string> values;
  for (const int c : columns) {
    names.push_back(quotedName(table.columns[static_cast<std::size_t>(c)].name));
    values.push_back(dialect.parameter(static_cast<int>(values.size()) + 1));
  }
  const std::string into = "INSERT INTO " + quotedName(table.name);
  const std::string returning = " RETURNING " + quotedName(table.key);
  if (names.empty()) return into + " DEFAULT VALUES" + returning;
  return fmt::format("{} ({}) VALUES ({}){}", into, joinTexts(names), joinTexts(values), returning);
}

std::string emitUpdateRow(const TableInfo& table, std::span<const int> set,
                          std::span<const int> check, const Dialect& dialect) {
  int next = 1;
  std::vector<std::string> assignments;
  std::vector<std::string> tests;
  const auto name = [&](int c) {
    return quotedName(table.columns[static_cast<std::size_t>(c)].name);
  };
  for (const int c : set) assignments.push_back(name(c) + " = " + dialect.parameter(next++));
  tests.push_back(quotedName(table.key) + " = " + dialect.parameter(next++));
  for (const int c : check)
    tests.push_back(name(c) + " IS NOT DISTINCT FROM " + dialect.parameter(next++));
  return fmt::format("UPDATE {} SET {} WHERE {}", quotedName(table.name), joinTexts(assignments),
                     joinTexts(tests, " AND "));
}

std::string emitDeleteRow(const TableInfo& table, const Dialect& dialect) {
  return fmt::format("DELETE FROM {} WHERE {} = {}", quotedName(table.name), quotedName(table.key),
                     dialect.parameter(1));
}

std::string emitDeleteRows(const TableInfo& table, const Dialect& dialect) {
  return fmt::format("DELETE FROM {} WHERE {} IN (SELECT k.k1 FROM {})", quotedName(table.name),
                     quotedName(table.key), dialect.keyList(1));
}

std::string emitLockRows(const TableInfo& table, const ColumnInfo* column, const Dialect& dialect) {
  if (dialect.forUpdate().empty()) return {};
  std::string out = fmt::format("SELECT {} FROM {}", quotedName(table.key), quotedName(table.name));
  if (column != nullptr)
    out += fmt::format(" WHERE {} = {}",
                       isTextType(column->type) ? dialect.fold(quotedName(column->name))
                                                : quotedName(column->name),
                       dialect.parameter(1));
  return out + fmt::format(" ORDER BY {}", quotedName(table.key)) + dialect.forUpdate();
}

std::string emitLockLinkedRows(const TableInfo& table, const ColumnInfo& common,
                               const TableInfo& link, const ColumnInfo& column,
                               const Dialect& dialect) {
  if (dialect.forUpdate().empty()) return {};
  const std::string shared = dialect.fold(quotedName(common.name));
  return fmt::format(
             "SELECT {0} FROM {1} WHERE {2} IN (SELECT {2} FROM {3} WHERE {4} = {5}) ORDER BY {0}",
             quotedName(table.key), quotedName(table.name), shared, quotedName(link.name),
             dialect.fold(quotedName(column.name)), dialect.parameter(1)) +
         dialect.forUpdate();
}

std::string emitRowExists(const TableInfo& table, const Dialect& dialect) {
  return fmt::format("SELECT 1 FROM {} WHERE {} = {}", quotedName(table.name),
                     quotedName(table.key), dialect.parameter(1));
}

std::string emitPage(const TableInfo& table, std::span<const int> columns, int rows,
                     const Dialect& dialect) {
  std::string list;
  for (const int c : columns)
    list += quotedName(table.columns[static_cast<std::size_t>(c)].name) + ", ";
  const std::string key = quotedName(table.key);
  return fmt::format("SELECT {}{} FROM {} WHERE {} > {} ORDER BY {} LIMIT {}", list, key,
                     quotedName(table.name), key, dialect.parameter(1, ValueKind::Whole), key,
                     rows);
}

std::size_t rowsTogether(std::size_t columns, const Dialect& dialect) {
  const auto most = static_cast<std::size_t>(dialect.mostParameters());
  return std::max<std::size_t>(1, most / std::max<std::size_t>(1, columns));
}

std::string emitInsertRows(const TableInfo& table, std::span<const int> columns, std::size_t rows,
                           const Dialect& dialect) {
  std::vector<std::string> names;
  addNames(table, columns, names);
  return insertRows(table, names, rows, dialect);
}

std::string emitInsertWithKeys(const TableInfo& table, std::span<const int> columns,
                               std::size_t rows, const Dialect& dialect) {
  std::vector<std::string> names = {quotedName(table.key)};
  addNames(table, columns, names);
  return insertRows(table, names, rows, dialect);
}

}  // namespace kv::jet
