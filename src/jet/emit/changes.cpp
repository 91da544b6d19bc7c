// SPDX-License-Identifier: Apache-2.0
#include "jet/emit/changes.h"

#include <fmt/format.h>

#include <algorithm>

#include "jet/emit/expression_kinds.h"
#include "jet/emit/expression_writer.h"
#include "jet/emit/select_writer.h"
#include "jet/emit/texts.h"

namespace kv::jet {

namespace {

const ColumnInfo& storedColumn(const TableInfo& table, const ColumnInfo& column) {
  return column.stands.empty() ? column : table.columns[*table.find(column.stands)];
}

// A column that an INSERT names, and which of its values goes there.
struct Target {
  const ColumnInfo* column;
  std::size_t value;
};

// Two names of one stored column: the one that comes last is written.
std::vector<Target> targetsOf(const BoundStatement& bound) {
  const TableInfo& table = *bound.insertTable;
  std::vector<Target> out;
  for (std::size_t i = 0; i < bound.insertColumns.size(); ++i) {
    const Target target{&table.columns[static_cast<std::size_t>(bound.insertColumns[i])], i};
    const auto& stored = storedColumn(table, *target.column);
    out.erase(std::remove_if(out.begin(), out.end(),
                             [&](const Target& earlier) {
                               return &storedColumn(table, *earlier.column) == &stored;
                             }),
              out.end());
    out.push_back(target);
  }
  return out;
}

// An output of a select whose rows stand under the names c0, c1 ...: the value as the column stores
// it, or the bare name where that is the same.
std::string storedOutput(const TableInfo& table, const Target& target, const Expr& output,
                         const Dialect& dialect) {
  const std::string name = quotedName(fmt::format("c{}", target.value));
  const ColumnInfo& column = *target.column;
  const ColumnInfo& stored = storedColumn(table, column);
  if (!output.type) return stored.type == ColumnType::Boolean ? "0" : "NULL";  // nothing but Null
  const bool asIs = column.stands.empty() && isTakenAsItIs(output, column.type);
  return asIs ? name : dialect.convert(name, *output.type, stored.type);
}

// The rows of a grouped or Distinct select, in the form of their columns.
std::string convertedRows(const TableInfo& table, const std::vector<Target>& targets,
                          const BoundSelect& select, std::string rows, const Dialect& dialect) {
  std::vector<std::string> names;
  for (std::size_t i = 0; i < select.outputs.size(); ++i)
    names.push_back(quotedName(fmt::format("c{}", i)));
  std::vector<std::string> list;
  bool converted = targets.size() != select.outputs.size();
  for (const auto& target : targets) {
    list.push_back(storedOutput(table, target, *select.outputs[target.value].expr, dialect));
    converted = converted || list.back() != names[target.value];
  }
  if (!converted) return rows;
  return fmt::format("WITH kv_rows ({}) AS ({}) SELECT {} FROM kv_rows", joinTexts(names), rows,
                     joinTexts(list));
}

}  // namespace

SqlText emitInsert(const BoundStatement& bound, const std::vector<Literal>& literals, bool lifted,
                   const Dialect& dialect) {
  static const std::vector<ScopeTable> kNoScope;
  const TableInfo& table = *bound.insertTable;
  ExpressionWriter writer(bound.select ? bound.select->scope : kNoScope, literals, lifted, dialect);
  const auto targets = targetsOf(bound);
  std::vector<std::string> names;
  names.reserve(targets.size());
  for (const auto& target : targets)
    names.push_back(quotedName(storedColumn(table, *target.column).name));
  const std::string into =
      fmt::format("INSERT INTO {} ({}) ", quotedName(table.name), joinTexts(names));
  std::vector<std::string> values;
  if (!bound.select) {
    for (const auto& target : targets)
      values.push_back(
          writer.assigned(table, *target.column, *bound.statement.insert->values[target.value]));
    return writer.finish(into + "VALUES (" + joinTexts(values) + ")");
  }
  const BoundSelect& select = *bound.select;
  SelectWriter rows(select, writer);
  if (select.grouped || select.syntax->distinct == Distinct::Values)
    return writer.finish(into + convertedRows(table, targets, select, rows.stored(), dialect));
  // The outputs take the form of their columns: the select list is written over with it.
  for (const auto& target : targets)
    values.push_back(writer.assigned(table, *target.column, *select.outputs[target.value].expr));
  return writer.finish(into + rows.rowsWith(std::move(values)));
}

SqlText emitUpdate(const BoundStatement& bound, const std::vector<Literal>& literals, bool lifted,
                   const Dialect& dialect) {
  const Update& s = *bound.statement.update;
  const TableInfo& table = *bound.scope[0].info;
  ExpressionWriter writer(bound.scope, literals, lifted, dialect);
  std::string out = "UPDATE " + writer.from(*s.from) + " SET ";
  for (std::size_t i = 0; i < s.assignments.size(); ++i) {
    const auto& column = table.columns[static_cast<std::size_t>(s.assignments[i].column->column)];
    if (i > 0) out += ", ";
    out += quotedName(storedColumn(table, column).name) + " = ";
    out += writer.assigned(table, column, *s.assignments[i].value);
  }
  if (s.where) out += " WHERE " + writer.condition(*s.where);
  return writer.finish(std::move(out));
}

SqlText emitDelete(const BoundStatement& bound, const std::vector<Literal>& literals, bool lifted,
                   const Dialect& dialect) {
  const Delete& s = *bound.statement.remove;
  ExpressionWriter writer(bound.scope, literals, lifted, dialect);
  const std::string where = s.where ? " WHERE " + writer.condition(*s.where) : std::string();
  if (bound.scope.size() == 1) return writer.finish("DELETE FROM " + writer.from(*s.from) + where);
  const auto& target = bound.scope[static_cast<std::size_t>(bound.target)];
  return writer.finish(fmt::format("DELETE FROM {} WHERE {} IN (SELECT {} FROM {}{})",
                                   quotedName(target.info->name), quotedName(target.info->key),
                                   writer.key(bound.target), writer.from(*s.from), where));
}

}  // namespace kv::jet
