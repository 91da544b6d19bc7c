// SPDX-License-Identifier: Apache-2.0
#include "jet/emit/expression_writer.h"

#include <fmt/format.h>

#include "jet/emit/expression_kinds.h"
#include "jet/emit/texts.h"

namespace kv::jet {

std::string ExpressionWriter::param(ParamUse use) {
  // The same use twice is one parameter: GROUP BY and select list must show the same expression.
  for (std::size_t i = 0; i < params_.size(); ++i) {
    const auto& p = params_[i];
    if (p.form == use.form && p.literal == use.literal && p.other == use.other &&
        p.greater == use.greater && p.negative == use.negative && p.column == use.column)
      return d_.parameter(firstParam_ + static_cast<int>(i), kindOf(use));
  }
  params_.push_back(use);
  return d_.parameter(firstParam_ + static_cast<int>(params_.size()) - 1, kindOf(use));
}

ValueKind ExpressionWriter::kindOf(const ParamUse& use) const {
  if (use.column != nullptr) {  // Assign
    switch (use.column->type) {
      case ColumnType::Boolean:
      case ColumnType::Int16:
      case ColumnType::Int32: return ValueKind::Whole;
      case ColumnType::Single:
      case ColumnType::Double: return ValueKind::Real;
      case ColumnType::Date: return ValueKind::Date;
      case ColumnType::Text:
      case ColumnType::Memo: break;
    }
    return ValueKind::Text;
  }
  if (use.form == ParamUse::Form::Watch) return ValueKind::Whole;
  if (use.form != ParamUse::Form::Plain) return ValueKind::Text;
  const auto kind = [&](int literal) { return literals_[static_cast<std::size_t>(literal)].kind; };
  switch (kind(use.literal)) {
    case LiteralKind::Text: return ValueKind::Text;
    case LiteralKind::Date: return ValueKind::Date;
    case LiteralKind::Real: return ValueKind::Real;
    case LiteralKind::Whole: break;
  }
  // The greater or lesser of two numbers may be either of them.
  return use.other >= 0 && kind(use.other) == LiteralKind::Real ? ValueKind::Real
                                                                : ValueKind::Whole;
}

std::string ExpressionWriter::literal(const ParamUse& use) {
  if (lifted_ && !literals_[static_cast<std::size_t>(use.literal)].kept) return param(use);
  const SqlValue value = boundValue(use, literals_, {});
  if (std::holds_alternative<std::monostate>(value)) return "NULL";
  if (const auto* whole = std::get_if<std::int64_t>(&value)) return std::to_string(*whole);
  if (const auto* real = std::get_if<double>(&value)) return fmt::format("{:.17g}", *real);
  if (const auto* date = std::get_if<Date>(&value)) return d_.date(*date);
  return d_.text(std::get<std::string>(value));
}

std::string ExpressionWriter::column(int table, int column) const {
  const auto& t = scope_[static_cast<std::size_t>(table)];
  const auto& c = t.info->columns[static_cast<std::size_t>(column)];
  if (c.stands.empty()) return quotedName(t.name) + "." + quotedName(c.name);
  const auto& stored = t.info->columns[*t.info->find(c.stands)];
  return d_.convert(quotedName(t.name) + "." + quotedName(stored.name), stored.type, c.type);
}

std::string ExpressionWriter::key(int table) const {
  const auto& t = scope_[static_cast<std::size_t>(table)];
  return quotedName(t.name) + "." + quotedName(t.info->key);
}

const Expr* ExpressionWriter::groupOf(const Expr& e) const {
  for (const auto* g : groups_)
    if (same(*g, e, literals_)) return g;
  return nullptr;
}

std::string ExpressionWriter::value(const Expr& e) {
  if (isText(e) && !isConstant(e) && groupOf(e) != nullptr) {
    const Groups ungrouped(*this);
    return d_.anySpelling(value(e));
  }
  if (isCondition(e)) return d_.stored(condition(e));
  switch (e.kind) {
    case ExprKind::Literal: return literal({.literal = e.literal});
    case ExprKind::Null: return "NULL";
    case ExprKind::Truth: return e.flag ? "-1" : "0";
    case ExprKind::Column: return column(e.table, e.column);
    case ExprKind::Negate: {
      const std::string number = value(*e.args[0]);
      // Two signs side by side would begin a comment.
      return (number.starts_with('-') ? "(- " : "(-") + number + ")";
    }
    case ExprKind::Binary: {
      const auto sides = values(e);
      return fmt::format("({} {} {})", sides.first, opText(e.op), sides.second);
    }
    case ExprKind::Function: return aggregate(e);
    case ExprKind::Not:
    case ExprKind::And:
    case ExprKind::Or:
    case ExprKind::Like:
    case ExprKind::In:
    case ExprKind::Between:
    case ExprKind::IsNull: break;  // conditions, done above
  }
  return {};
}

// Parameters are numbered as they are written, so the left side is written first: arguments of
// one call could be evaluated in any order.
std::pair<std::string, std::string> ExpressionWriter::values(const Expr& e) {
  std::string left = operand(*e.args[0]);
  std::string right = operand(*e.args[1]);
  return {std::move(left), std::move(right)};
}

std::string ExpressionWriter::operand(const Expr& e) {
  std::string sql = value(e);
  const bool bare = e.kind == ExprKind::Column || e.kind == ExprKind::Function;
  return bare && e.type ? d_.operand(sql, *e.type) : sql;
}

std::string ExpressionWriter::aggregate(const Expr& e) {
  const bool sums = e.aggregate == Aggregate::Sum || e.aggregate == Aggregate::Avg;
  std::string argument = "*";
  if (!e.flag) {
    const Groups ungrouped(*this);  // inside an aggregate rows are themselves
    argument = sums ? operand(*e.args[0]) : value(*e.args[0]);
  }
  switch (e.aggregate) {
    case Aggregate::Count: return "COUNT(" + argument + ")";
    case Aggregate::Sum: return "SUM(" + argument + ")";
    case Aggregate::Avg: return "AVG(" + argument + ")";
    case Aggregate::Min:
    case Aggregate::Max: {
      const bool greatest = e.aggregate == Aggregate::Max;
      if (isText(e)) return d_.textExtreme(argument, greatest);
      return (greatest ? "MAX(" : "MIN(") + argument + ")";
    }
    case Aggregate::None: break;
  }
  return {};
}

std::string ExpressionWriter::fold(const Expr& e) {
  if (e.kind == ExprKind::Literal)
    return literal({.form = ParamUse::Form::Fold, .literal = e.literal});
  return e.kind == ExprKind::Null ? "NULL" : d_.fold(value(e));
}

std::vector<std::string> ExpressionWriter::order(const Expr& e) {
  if (e.kind == ExprKind::Literal) {
    std::vector<std::string> out;
    for (const auto form : d_.orderForms())
      out.push_back(literal({.form = form, .literal = e.literal}));
    return out;
  }
  return d_.order(value(e));
}

std::string ExpressionWriter::assigned(const TableInfo& table, const ColumnInfo& given,
                                       const Expr& e) {
  const ColumnInfo& column =
      given.stands.empty() ? given : table.columns[*table.find(given.stands)];
  if (e.kind == ExprKind::Literal)
    return literal({.form = ParamUse::Form::Assign, .literal = e.literal, .column = &column});
  if (e.kind == ExprKind::Negate && e.args[0]->kind == ExprKind::Literal)
    return literal({.form = ParamUse::Form::Assign,
                    .literal = e.args[0]->literal,
                    .negative = true,
                    .column = &column});
  if (!e.type) return column.type == ColumnType::Boolean ? "0" : "NULL";
  std::string sql = value(e);
  if (isTakenAsItIs(e, column.type)) return sql;
  return d_.convert(sql, *e.type, column.type);
}

std::string ExpressionWriter::from(const TableRef& ref) {
  switch (ref.kind) {
    case TableRef::Kind::Table: {
      const auto& t = scope_[static_cast<std::size_t>(ref.table)];
      return quotedName(t.info->name) + " AS " + quotedName(t.name);
    }
    case TableRef::Kind::Inner: return join(ref, " INNER JOIN ");
    case TableRef::Kind::Left: return join(ref, " LEFT JOIN ");
    case TableRef::Kind::Right: return join(ref, " RIGHT JOIN ");
    // Not CROSS JOIN: SQLite takes that as an order to join in.
    case TableRef::Kind::Cross: return join(ref, " INNER JOIN ") + " ON (1 = 1)";
  }
  return {};
}

// Joins nest to the left without parentheses; engines see through a flat list more easily.
std::string ExpressionWriter::join(const TableRef& ref, std::string_view word) {
  std::string out = from(*ref.left);
  out += word;
  const bool nested = ref.right->kind != TableRef::Kind::Table;
  out += nested ? "(" + from(*ref.right) + ")" : from(*ref.right);
  if (ref.on) out += " ON " + condition(*ref.on);
  return out;
}

}  // namespace kv::jet
