// SPDX-License-Identifier: Apache-2.0
// The conditions among the expressions.
#include "jet/emit/expression_writer.h"

#include <fmt/format.h>

#include <algorithm>

#include "jet/emit/expression_kinds.h"
#include "jet/emit/texts.h"

namespace kv::jet {

namespace {

std::string rowOf(const std::vector<std::string>& parts) {
  return parts.size() == 1 ? parts[0] : "(" + joinTexts(parts) + ")";
}

// "c = 1 Or c = 2 Or ..." with literals is a list, which engines look up faster than they test a
// chain.
const Expr* sameColumnList(const Expr& e) {
  const Expr* first = e.args[0].get();
  for (const auto& arg : e.args) {
    if (arg->kind != ExprKind::Binary || arg->op != Op::Equal ||
        arg->args[0]->kind != ExprKind::Column || arg->args[1]->kind != ExprKind::Literal)
      return nullptr;
    const Expr& c = *arg->args[0];
    if (c.table != first->args[0]->table || c.column != first->args[0]->column ||
        isDate(c) != isDate(*arg->args[1]))
      return nullptr;
  }
  return first;
}

}  // namespace

// Both sides in the form in which they compare under `op`.
std::pair<std::string, std::string> ExpressionWriter::sides(Op op, const Expr& a, const Expr& b) {
  if (isText(a) && isText(b)) {
    const bool equality = op == Op::Equal || op == Op::NotEqual;
    std::string left = equality ? fold(a) : rowOf(order(a));
    std::string right = equality ? fold(b) : rowOf(order(b));
    return {std::move(left), std::move(right)};
  }
  std::string left = value(a);
  std::string right = value(b);
  if (isDate(a) && isNumber(b)) left = d_.dayCount(left);
  if (isNumber(a) && isDate(b)) right = d_.dayCount(right);
  return {std::move(left), std::move(right)};
}

std::string ExpressionWriter::compare(Op op, const Expr& a, const Expr& b) {
  const auto [left, right] = sides(op, a, b);
  return fmt::format("({} {} {})", left, opText(op), right);
}

std::string ExpressionWriter::condition(const Expr& e) {
  switch (e.kind) {
    case ExprKind::Literal:
    case ExprKind::Column:
    case ExprKind::Negate:
    case ExprKind::Function: return "(" + value(e) + " <> 0)";
    case ExprKind::Null: return "(NULL = 0)";
    case ExprKind::Truth: return e.flag ? "(1 = 1)" : "(1 = 0)";
    case ExprKind::Binary:
      return isComparison(e.op) ? compare(e.op, *e.args[0], *e.args[1]) : "(" + value(e) + " <> 0)";
    case ExprKind::Not: return "(NOT " + condition(*e.args[0]) + ")";
    case ExprKind::And: return balanced(e.args, 0, e.args.size(), " AND ");
    case ExprKind::Or:
      if (const auto* first = sameColumnList(e)) return in(*first->args[0], e, true);
      return balanced(e.args, 0, e.args.size(), " OR ");
    case ExprKind::Like: return like(e);
    case ExprKind::In: return in(*e.args[0], e, false);
    case ExprKind::Between: return between(e);
    case ExprKind::IsNull:
      return fmt::format("({} IS {}NULL)", value(*e.args[0]), e.negated ? "NOT " : "");
  }
  return {};
}

// Engines limit the depth of an expression, not its length: a chain becomes a balanced tree.
std::string ExpressionWriter::balanced(const std::vector<ExprPtr>& args, std::size_t from,
                                       std::size_t to, std::string_view word) {
  if (to - from == 1) return condition(*args[from]);
  const auto middle = from + (to - from) / 2;
  std::string out = "(";
  out += balanced(args, from, middle, word);
  out += word;
  out += balanced(args, middle, to, word);
  return out + ")";
}

// `x In (list)`: the list is in e.args[1...], or in the right sides of a chain of comparisons.
std::string ExpressionWriter::in(const Expr& x, const Expr& e, bool chain) {
  std::vector<const Expr*> items;
  for (std::size_t i = chain ? 0 : 1; i < e.args.size(); ++i)
    items.push_back(chain ? e.args[i]->args[1].get() : e.args[i].get());
  const bool alike = std::all_of(items.begin(), items.end(), [&](const Expr* item) {
    return !item->type || !x.type || (isText(x) == isText(*item) && isDate(x) == isDate(*item));
  });
  std::string out;
  if (alike) {
    const std::string left = isText(x) ? fold(x) : value(x);
    std::vector<std::string> list;
    list.reserve(items.size());
    for (const auto* item : items) list.push_back(isText(x) ? fold(*item) : value(*item));
    out = fmt::format("({} IN ({}))", left, joinTexts(list));
  } else {
    std::vector<std::string> tests;
    tests.reserve(items.size());
    for (const auto* item : items) tests.push_back(compare(Op::Equal, x, *item));
    out = "(" + joinTexts(tests, " OR ") + ")";
  }
  return e.negated ? "(NOT " + out + ")" : out;
}

std::string ExpressionWriter::like(const Expr& e) {
  std::string text = value(*e.args[0]);
  if (e.args[0]->type && !isText(*e.args[0]))
    text = d_.convert(text, *e.args[0]->type, ColumnType::Text);
  const Expr& pattern = *e.args[1];
  std::string out =
      pattern.kind == ExprKind::Literal
          ? d_.likeLiteral(text, literal({.form = d_.patternForm(), .literal = pattern.literal}))
          : d_.like(text, value(pattern));
  return e.negated ? "(NOT " + out + ")" : out;
}

// Swapped bounds are in order too.
std::string ExpressionWriter::between(const Expr& e) {
  const Expr& x = *e.args[0];
  const Expr& a = *e.args[1];
  const Expr& b = *e.args[2];
  std::string out;
  const auto plain = [&](const Expr& l) {
    return literals_[static_cast<std::size_t>(l.literal)].kind;
  };
  const bool literals = a.kind == ExprKind::Literal && b.kind == ExprKind::Literal;
  const bool alike = literals && (isText(a)   ? isText(x) && isText(b)
                                  : isDate(a) ? isDate(x) && isDate(b)
                                              : isNumber(x) && plain(b) != LiteralKind::Date);
  if (alike) {  // which one is the lower is known when the values are
    const auto bound = [&](bool greater) {
      const auto forms = isText(x) ? d_.orderForms() : std::vector{ParamUse::Form::Plain};
      std::vector<std::string> parts;
      parts.reserve(forms.size());
      for (const auto form : forms)
        parts.push_back(
            literal({.form = form, .literal = a.literal, .other = b.literal, .greater = greater}));
      return rowOf(parts);
    };
    const std::string left = isText(x) ? rowOf(order(x)) : value(x);
    const std::string low = bound(false);
    const std::string high = bound(true);
    out = fmt::format("({0} >= {1} AND {0} <= {2})", left, low, high);
  } else {
    const std::string aboveA = compare(Op::GreaterEqual, x, a);
    const std::string belowB = compare(Op::LessEqual, x, b);
    const std::string aboveB = compare(Op::GreaterEqual, x, b);
    const std::string belowA = compare(Op::LessEqual, x, a);
    out = fmt::format("(({} AND {}) OR ({} AND {}))", aboveA, belowB, aboveB, belowA);
  }
  return e.negated ? "(NOT " + out + ")" : out;
}

}  // namespace kv::jet
