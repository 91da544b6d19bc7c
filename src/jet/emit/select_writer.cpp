// SPDX-License-Identifier: Apache-2.0
#include "jet/emit/select_writer.h"

#include <fmt/format.h>

#include <algorithm>
#include <iterator>

#include "jet/emit/expression_kinds.h"
#include "jet/emit/texts.h"

namespace kv::jet {

namespace {

template <typename Keys>
std::string joinKeys(const Keys& keys) {
  std::vector<std::string> texts;
  texts.reserve(keys.size());
  for (const auto& key : keys) texts.push_back(key.text());
  return joinTexts(texts);
}

}  // namespace

std::string SelectWriter::assemble(Shape shape) {
  const Select& syntax = *s_.syntax;
  std::string tail;
  {
    const ExpressionWriter::Groups ungrouped(w_);  // before grouping, rows are themselves
    if (syntax.from) tail += " FROM " + w_.from(*syntax.from);
    std::vector<std::string> tests;
    if (syntax.where) tests.push_back(w_.condition(*syntax.where));
    for (auto& watch : watches()) tests.push_back(std::move(watch));
    if (!tests.empty()) tail += " WHERE " + joinTexts(tests, " AND ");
  }
  if (!shape.once.empty())
    tail = fmt::format(" FROM (SELECT DISTINCT {}{}) AS {}", joinTexts(shape.once), tail,
                       quotedName(s_.scope[0].name));
  if (!shape.group.empty()) tail += " GROUP BY " + joinTexts(shape.group);
  if (syntax.having) tail += " HAVING " + w_.condition(*syntax.having);
  auto total = shape.order;
  for (auto& tie : shape.ties)
    if (std::find(total.begin(), total.end(), tie) == total.end()) total.push_back(tie);
  std::string out;
  if (syntax.top) {
    out = top(shape, total, tail);
  } else {
    out = "SELECT " + joinTexts(shape.list) + tail;
    if (!total.empty()) out += " ORDER BY " + joinKeys(total);
  }
  if (shape.limit > 0) out += fmt::format(" LIMIT {}", shape.limit);
  return out;
}

// What finds out that a star no longer stands for the columns that it stood for, once for each
// table.
std::vector<std::string> SelectWriter::watches() {
  std::vector<std::string> out;
  const auto& items = s_.syntax->items;
  if (std::all_of(items.begin(), items.end(),
                  [](const SelectItem& item) { return item.kind == SelectItem::Kind::Expression; }))
    return out;
  for (const auto& t : s_.scope) {
    if (d_.noNewColumns(*t.info, {}).empty()) continue;
    auto test = d_.noNewColumns(*t.info, w_.param({.form = ParamUse::Form::Watch}));
    if (std::find(out.begin(), out.end(), test) == out.end()) out.push_back(std::move(test));
  }
  return out;
}

// TOP n keeps every row that ties with the last one on the ORDER BY; without one it is the first n.
std::string SelectWriter::top(const Shape& shape, const std::vector<OrderKey>& total,
                              const std::string& tail) const {
  std::vector<std::string> outer;
  std::string inner;
  for (std::size_t i = 0; i < shape.list.size(); ++i) {
    outer.push_back(fmt::format("c{}", i));
    inner += fmt::format("{} AS c{}, ", shape.list[i], i);
  }
  const std::string sequence = total.empty()
                                   ? "ROW_NUMBER() OVER ()"
                                   : "ROW_NUMBER() OVER (ORDER BY " + joinKeys(total) + ")";
  const std::string rank =
      shape.order.empty() ? sequence : "RANK() OVER (ORDER BY " + joinKeys(shape.order) + ")";
  const Select& syntax = *s_.syntax;
  const std::string limit = syntax.topPercent
                                ? fmt::format("(kv_rank - 1) * 100 < {} * kv_count", *syntax.top)
                                : fmt::format("kv_rank <= {}", *syntax.top);
  return fmt::format(
      "SELECT {} FROM (SELECT {}{} AS kv_seq, {} AS kv_rank{}{}) AS kv_top WHERE {} ORDER BY "
      "kv_seq",
      joinTexts(outer), inner, sequence, rank,
      syntax.topPercent ? ", COUNT(*) OVER () AS kv_count" : "", tail, limit);
}

std::vector<std::string> SelectWriter::outputs() {
  std::vector<std::string> out;
  for (const auto& o : s_.outputs) out.push_back(w_.value(*o.expr));
  return out;
}

std::vector<std::string> SelectWriter::outputsAndKeys() {
  auto out = outputs();
  auto named = keys(s_.named);
  out.insert(out.end(), std::make_move_iterator(named.begin()),
             std::make_move_iterator(named.end()));
  return out;
}

std::vector<std::string> SelectWriter::keys(const std::vector<int>& tables) const {
  std::vector<std::string> out;
  out.reserve(tables.size());
  for (const int t : tables) out.push_back(w_.key(t));
  return out;
}

// Keys are never Null, so they need no direction.
std::vector<SelectWriter::OrderKey> SelectWriter::allKeys() const {
  std::vector<OrderKey> out;
  for (std::size_t t = 0; t < s_.scope.size(); ++t)
    out.push_back({w_.key(static_cast<int>(t)), {}});
  return out;
}

void SelectWriter::append(std::vector<OrderKey>& out, const Expr& e, bool descending) {
  for (auto& key : isText(e) ? w_.order(e) : std::vector{w_.value(e)})
    out.push_back({std::move(key), d_.direction(descending)});
}

std::vector<SelectWriter::OrderKey> SelectWriter::orderBy() {
  std::vector<OrderKey> out;
  for (const auto& o : s_.order) append(out, *o.expr, o.descending);
  return out;
}

// Order and ties of a select whose rows are rows of tables.
void SelectWriter::orderRows(Shape& shape) {
  if (!s_.rowsOnly) {
    shape.order = orderBy();
    shape.ties = allKeys();
    return;
  }
  shape.group = keys(s_.named);
  for (const auto& o : s_.order) {
    std::vector<OrderKey> own;
    append(own, *o.expr, o.descending);
    // A column of a table that is not shown: the first of the combination.
    if (!ofNamed(*o.expr))
      for (auto& key : own) key.sql = "MIN(" + key.sql + ")";
    shape.order.insert(shape.order.end(), own.begin(), own.end());
  }
  for (const auto& key : shape.group) shape.ties.push_back({key, {}});
}

bool SelectWriter::ofNamed(const Expr& e) const {
  if (e.kind == ExprKind::Column &&
      std::find(s_.named.begin(), s_.named.end(), e.table) == s_.named.end())
    return false;
  return std::all_of(e.args.begin(), e.args.end(), [&](const auto& arg) { return ofNamed(*arg); });
}

// Group keys of a list of expressions: fold keys of text, constants left out.
std::vector<std::string> SelectWriter::groupKeys(const std::vector<const Expr*>& exprs) {
  std::vector<std::string> out;
  for (const auto* e : exprs)
    if (!isConstant(*e)) out.push_back(isText(*e) ? w_.fold(*e) : w_.value(*e));
  return out;
}

std::vector<const Expr*> SelectWriter::groups() const {
  std::vector<const Expr*> out;
  for (const auto& g : s_.syntax->groupBy) out.push_back(g.get());
  return out;
}

// The groups of a grouped select, and its outputs, which `groups` stand in by now. Constants alone
// make one group of any rows and none of no rows, which is why they cannot be left out; as they
// stand, an engine would take them for ordinals. HAVING alone makes one group always, which engines
// believe only where something is aggregated.
void SelectWriter::group(const std::vector<const Expr*>& groups, Shape& shape) {
  {
    const ExpressionWriter::Groups ungrouped(w_);
    shape.group = groupKeys(groups);
  }
  if (shape.group.empty() && !groups.empty()) shape.group.emplace_back("(0 + 0)");
  shape.list = outputs();
  if (groups.empty() && std::all_of(s_.outputs.begin(), s_.outputs.end(),
                                    [](const Output& o) { return isConstant(*o.expr); }))
    shape.list[0] = "CASE WHEN COUNT(*) >= 0 THEN " + shape.list[0] + " END";
}

std::string SelectWriter::whole() {
  if (s_.syntax->distinct == Distinct::Values) return distinct(false);
  return s_.grouped ? grouped() : rowsWith(outputs());
}

std::string SelectWriter::stored() {
  return s_.syntax->distinct == Distinct::Values ? distinct(true) : whole();
}

std::string SelectWriter::rowsWith(std::vector<std::string> list) {
  Shape shape;
  shape.list = std::move(list);
  orderRows(shape);
  return assemble(std::move(shape));
}

std::string SelectWriter::grouped() {
  const auto by = groups();
  const ExpressionWriter::Groups standing(w_, by);
  Shape shape;
  group(by, shape);
  shape.order = orderBy();
  for (const auto* g : by)
    if (!isConstant(*g)) append(shape.ties, *g, false);
  return assemble(std::move(shape));
}

// The columns of a DISTINCT that shows columns of one table, for equal bytes to be put together
// before keys are made of them, which is what costs in a list of few values in many rows. What it
// is ordered by is among them, or made of them.
std::vector<std::string> SelectWriter::columnsShown() const {
  if (s_.grouped || s_.syntax->top || s_.scope.size() != 1) return {};
  const auto& columns = s_.scope[0].info->columns;
  std::vector<std::string> out;
  bool anyText = false;
  for (const auto& o : s_.outputs) {
    if (isConstant(*o.expr)) continue;
    if (o.expr->kind != ExprKind::Column) return {};
    const auto& column = columns[static_cast<std::size_t>(o.expr->column)];
    if (!column.stands.empty()) return {};
    anyText = anyText || isTextType(column.type);
    std::string name = quotedName(column.name);
    if (std::find(out.begin(), out.end(), name) == out.end()) out.push_back(std::move(name));
  }
  return anyText ? out : std::vector<std::string>();
}

// DISTINCT is grouping by all outputs. Over a grouped select, or with constants alone, there is
// nothing to group by, and the rows as they are shown are compared. Rows that are inserted may come
// in any one order.
std::string SelectWriter::distinct(bool inserted) {
  std::vector<const Expr*> all;
  for (const auto& o : s_.outputs) all.push_back(o.expr);
  const auto by = s_.grouped ? groups() : all;
  Shape shape;
  if (!s_.grouped) shape.group = groupKeys(all);
  const ExpressionWriter::Groups standing(w_, by);
  if (s_.grouped)
    group(by, shape);
  else
    shape.list = outputs();
  if (s_.grouped && !s_.syntax->top) return distinctGroups(std::move(shape), all);
  const bool plain = !s_.grouped && shape.group.empty();
  shape.once = columnsShown();
  shape.order = orderBy();
  if (inserted && !s_.grouped && !s_.syntax->top && shape.order.empty()) {
    // The groups' own keys, which need not be made anew of their values.
    for (const auto& key : shape.group) shape.ties.push_back({key, d_.direction(false)});
  } else {
    for (const auto* e : all)
      if (!isConstant(*e)) append(shape.ties, *e, false);
  }
  if (plain && !shape.list.empty() && !s_.syntax->top) {
    shape.list[0] = "DISTINCT " + shape.list[0];
    shape.order.clear();
    shape.ties.clear();
  }
  return assemble(std::move(shape));
}

// The rows that groups give, each once: grouped again around the groups, with what they are ordered
// by beside what they show.
std::string SelectWriter::distinctGroups(Shape shape, const std::vector<const Expr*>& outputs) {
  std::vector<OrderKey> keys;
  const auto orderBy = [&](const Expr& e, bool descending) {
    for (auto& key : isText(e) ? w_.order(e) : std::vector{w_.value(e)}) {
      const bool there = std::any_of(keys.begin(), keys.end(),
                                     [&](const OrderKey& other) { return other.sql == key; });
      if (!there) keys.push_back({std::move(key), d_.direction(descending)});
    }
  };
  for (const auto& o : s_.order) orderBy(*o.expr, o.descending);
  for (const auto* e : outputs)
    if (!isConstant(*e)) orderBy(*e, false);
  std::vector<std::string> shown;
  for (std::size_t i = 0; i < shape.list.size(); ++i) {
    shown.push_back(fmt::format("c{}", i));
    shape.list[i] += " AS " + shown.back();
  }
  auto grouped = shown;
  std::vector<std::string> ordered;
  for (std::size_t i = 0; i < keys.size(); ++i) {
    grouped.push_back(fmt::format("o{}", i));
    ordered.push_back(grouped.back() + keys[i].direction);
    shape.list.push_back(keys[i].sql + " AS " + grouped.back());
  }
  std::string out = fmt::format("SELECT {} FROM ({}) AS kv_groups GROUP BY {}", joinTexts(shown),
                                assemble(std::move(shape)), joinTexts(grouped));
  if (!ordered.empty()) out += " ORDER BY " + joinTexts(ordered);
  return out;
}

std::string SelectWriter::keysOnly() { return rowsWith(keys(s_.named)); }

std::string SelectWriter::head() {
  Shape shape;
  shape.list = outputsAndKeys();
  orderRows(shape);
  shape.limit = kHeadRows + 1;
  return assemble(std::move(shape));
}

std::string SelectWriter::rowsByKey() {
  std::string out =
      "SELECT " + joinTexts(outputsAndKeys()) + " FROM " + d_.keyList(s_.named.size());
  for (std::size_t i = 0; i < s_.named.size(); ++i) {
    const auto& t = s_.scope[static_cast<std::size_t>(s_.named[i])];
    out += fmt::format(" LEFT JOIN {} AS {} ON {} = k.k{}", quotedName(t.info->name),
                       quotedName(t.name), w_.key(s_.named[i]), i + 1);
  }
  return out + d_.inKeyListOrder();
}

}  // namespace kv::jet
