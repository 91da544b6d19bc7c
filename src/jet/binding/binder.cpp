// SPDX-License-Identifier: Apache-2.0
#include "jet/binding/binder.h"

#include <fmt/format.h>

#include <algorithm>

#include "common/text.h"
#include "jet/errors.h"

namespace kv::jet {

namespace {

// What kinds of values go together in a comparison.
enum class Family : std::uint8_t { Any, Number, Date, Text };

Family familyOf(const std::optional<ColumnType>& type) {
  if (!type) return Family::Any;
  switch (*type) {
    case ColumnType::Boolean:
    case ColumnType::Int16:
    case ColumnType::Int32:
    case ColumnType::Single:
    case ColumnType::Double: return Family::Number;
    case ColumnType::Date: return Family::Date;
    case ColumnType::Text:
    case ColumnType::Memo: return Family::Text;
  }
  return Family::Any;
}

// Dates are day counts, so they go with numbers; text goes with text alone.
bool comparable(Family a, Family b) {
  if (a == Family::Any || b == Family::Any) return true;
  return (a == Family::Text) == (b == Family::Text);
}

Aggregate aggregateNamed(std::string_view name) {
  const std::string lower = asciiLowered(name);
  if (lower == "count") return Aggregate::Count;
  if (lower == "sum") return Aggregate::Sum;
  if (lower == "avg") return Aggregate::Avg;
  if (lower == "min") return Aggregate::Min;
  if (lower == "max") return Aggregate::Max;
  return Aggregate::None;
}

void walk(const Expr& e, const auto& visit) {
  visit(e);
  for (const auto& arg : e.args) walk(*arg, visit);
}

bool hasAggregate(const Expr& e) {
  bool found = false;
  walk(e, [&](const Expr& x) { found = found || x.aggregate != Aggregate::None; });
  return found;
}

class Binder {
 public:
  Binder(std::string_view text, const std::vector<Literal>& literals, const Catalog& catalog)
      : text_(text), literals_(literals), catalog_(catalog) {}

  BoundStatement run(Statement statement) {
    BoundStatement out;
    out.statement = std::move(statement);
    switch (out.statement.kind) {
      case StatementKind::Select: out.select = select(*out.statement.select); break;
      case StatementKind::Insert: insert(*out.statement.insert, out); break;
      case StatementKind::Update: update(*out.statement.update, out); break;
      case StatementKind::Delete: remove(*out.statement.remove, out); break;
    }
    out.tables = std::move(tables_);
    return out;
  }

 private:
  // Where an expression stands decides what it may contain.
  struct Place {
    bool aggregates = false;
    std::size_t firstTable = 0;  // ON: only the tables of its own join
  };

  [[noreturn]] void failAt(std::int32_t number, std::string_view message, TextRange range) const {
    fail(number, message, text_, range);
  }

  // ---- tables ----

  const TableInfo& table(const std::string& name, TextRange range) {
    const TableInfo* info = catalog_.find(name);
    if (info == nullptr) failAt(kUnknownTable, kNoTable, range);
    if (std::find(tables_.begin(), tables_.end(), info->name) == tables_.end())
      tables_.push_back(info->name);
    return *info;
  }

  void from(TableRef& ref, std::vector<ScopeTable>& scope, bool optional) {
    if (ref.kind == TableRef::Kind::Table) {
      const TableInfo& info = table(ref.name, ref.range);
      const std::string& name = ref.alias.empty() ? info.name : ref.alias;
      for (const auto& other : scope)
        if (equalNoCase(other.name, name)) failAt(kSyntax, kTableTwice, ref.range);
      ref.table = static_cast<int>(scope.size());
      scope.push_back({&info, name, optional});
      return;
    }
    const auto first = scope.size();
    from(*ref.left, scope, optional || ref.kind == TableRef::Kind::Right);
    from(*ref.right, scope, optional || ref.kind == TableRef::Kind::Left);
    if (ref.on) predicate(*ref.on, scope, {.firstTable = first});
  }

  // ---- expressions ----

  void column(Expr& e, const std::vector<ScopeTable>& scope, std::size_t first) const {
    int matches = 0;
    for (std::size_t i = first; i < scope.size(); ++i) {
      if (!e.qualifier.empty() && !equalNoCase(scope[i].name, e.qualifier)) continue;
      const auto at = scope[i].info->find(e.name);
      if (!at) continue;
      if (++matches > 1) failAt(kSyntax, kAmbiguous, e.range);
      e.table = static_cast<int>(i);
      e.column = static_cast<int>(*at);
      e.type = scope[i].info->columns[*at].type;
    }
    if (matches == 0) failAt(kUnknownName, kNoValue, e.range);
  }

  void function(Expr& e, const std::vector<ScopeTable>& scope, Place place) {
    const std::string lower = asciiLowered(e.name);
    if (lower == "isnull") {
      if (e.flag || e.args.size() != 1) failAt(kSyntax, kWrongArguments, e.range);
      e.kind = ExprKind::IsNull;
      value(*e.args[0], scope, place);
      e.type = ColumnType::Boolean;
      return;
    }
    e.aggregate = aggregateNamed(e.name);
    if (e.aggregate == Aggregate::None) failAt(kSyntax, kUndefinedFunction, e.range);
    if (!place.aggregates) failAt(kSyntax, kAggregateHere, e.range);
    if (e.flag ? e.aggregate != Aggregate::Count : e.args.size() != 1)
      failAt(kSyntax, kWrongArguments, e.range);
    place.aggregates = false;
    for (auto& arg : e.args) value(*arg, scope, place);
    const auto argument = e.args.empty() ? std::optional<ColumnType>() : e.args[0]->type;
    switch (e.aggregate) {
      case Aggregate::Count: e.type = ColumnType::Int32; break;
      case Aggregate::Sum:
      case Aggregate::Avg:
        if (familyOf(argument) == Family::Text || familyOf(argument) == Family::Date)
          failAt(kMismatch, kTypeMismatch, e.range);
        e.type = ColumnType::Double;
        break;
      case Aggregate::Min:
      case Aggregate::Max:
      case Aggregate::None: e.type = argument; break;
    }
  }

  void requireComparable(const Expr& a, const Expr& b) const {
    if (!comparable(familyOf(a.type), familyOf(b.type)))
      failAt(kMismatch, kTypeMismatch, b.kind == ExprKind::Column ? a.range : b.range);
  }

  void binary(Expr& e) const {
    const Expr& left = *e.args[0];
    const Expr& right = *e.args[1];
    if (isComparison(e.op)) {
      requireComparable(left, right);
      e.type = ColumnType::Boolean;
      return;
    }
    if (e.op != Op::Add && e.op != Op::Subtract && e.op != Op::Multiply)
      failAt(kSyntax, kNotAvailableHere, e.range);
    const auto numeric = [](const Expr& x) {
      const auto family = familyOf(x.type);
      return family == Family::Number || family == Family::Any;
    };
    if (!numeric(left) || !numeric(right)) failAt(kMismatch, kTypeMismatch, e.range);
    const auto whole = [](const Expr& x) {
      return !x.type || isWholeType(*x.type) || *x.type == ColumnType::Boolean;
    };
    e.type = whole(left) && whole(right) ? ColumnType::Int32 : ColumnType::Double;
  }

  void value(Expr& e, const std::vector<ScopeTable>& scope, Place place) {
    switch (e.kind) {
      case ExprKind::Column: column(e, scope, place.firstTable); return;
      case ExprKind::Function: function(e, scope, place); return;
      case ExprKind::Literal:
        switch (literals_[static_cast<std::size_t>(e.literal)].kind) {
          case LiteralKind::Text: e.type = ColumnType::Text; break;
          case LiteralKind::Whole: e.type = ColumnType::Int32; break;
          case LiteralKind::Real: e.type = ColumnType::Double; break;
          case LiteralKind::Date: e.type = ColumnType::Date; break;
        }
        return;
      case ExprKind::Null: e.type.reset(); return;
      case ExprKind::Truth: e.type = ColumnType::Boolean; return;
      case ExprKind::Not:
      case ExprKind::And:
      case ExprKind::Or:
        for (auto& arg : e.args) predicate(*arg, scope, place);
        e.type = ColumnType::Boolean;
        return;
      case ExprKind::Negate:
      case ExprKind::Binary:
      case ExprKind::Like:
      case ExprKind::In:
      case ExprKind::Between:
      case ExprKind::IsNull:
        for (auto& arg : e.args) value(*arg, scope, place);
        break;
    }
    if (e.kind == ExprKind::Negate) {
      const auto family = familyOf(e.args[0]->type);
      if (family != Family::Number && family != Family::Any)
        failAt(kMismatch, kTypeMismatch, e.range);
      e.type = e.args[0]->type == ColumnType::Boolean ? ColumnType::Int16 : e.args[0]->type;
      return;
    }
    if (e.kind == ExprKind::Binary) {
      binary(e);
      return;
    }
    if (e.kind == ExprKind::In || e.kind == ExprKind::Between)
      for (std::size_t i = 1; i < e.args.size(); ++i) requireComparable(*e.args[0], *e.args[i]);
    if (e.kind == ExprKind::Like) {
      const auto family = familyOf(e.args[1]->type);
      if (family != Family::Text && family != Family::Any)
        failAt(kMismatch, kTypeMismatch, e.args[1]->range);
    }
    e.type = ColumnType::Boolean;
  }

  void predicate(Expr& e, const std::vector<ScopeTable>& scope, Place place) {
    value(e, scope, place);
    if (familyOf(e.type) == Family::Text) failAt(kMismatch, kTypeMismatch, e.range);
  }

  // ---- SELECT ----

  std::unique_ptr<BoundSelect> select(Select& s) {
    auto out = std::make_unique<BoundSelect>();
    out->syntax = &s;
    if (s.from) from(*s.from, out->scope, false);
    const auto& scope = out->scope;
    for (auto& item : s.items) selectItem(item, *out);
    if (s.where) predicate(*s.where, scope, {});
    for (auto& e : s.groupBy) value(*e, scope, {});
    if (s.having) predicate(*s.having, scope, {.aggregates = true});
    for (auto& item : s.orderBy) out->order.push_back(ordering(item, *out));
    nameOutputs(*out);
    group(s, *out);
    keys(s, *out);
    return out;
  }

  void selectItem(SelectItem& item, BoundSelect& out) {
    if (item.kind == SelectItem::Kind::Expression) {
      value(*item.expr, out.scope, {.aggregates = true});
      Output o{.expr = item.expr.get(), .name = item.alias};
      if (item.expr->kind == ExprKind::Column) {
        o.table = item.expr->table;
        o.column = item.expr->column;
      }
      const auto* info = baseColumn(out, *item.expr);
      o.type = item.expr->type.value_or(ColumnType::Text);
      o.size = info != nullptr ? info->size : isTextType(o.type) ? kExpressionText : 0;
      out.outputs.push_back(std::move(o));
      return;
    }
    bool found = false;
    for (std::size_t t = 0; t < out.scope.size(); ++t) {
      if (item.kind == SelectItem::Kind::TableStar &&
          !equalNoCase(out.scope[t].name, item.qualifier))
        continue;
      found = true;
      const auto& columns = out.scope[t].info->columns;
      for (std::size_t c = 0; c < columns.size(); ++c) {
        auto e = std::make_unique<Expr>();
        e->kind = ExprKind::Column;
        e->range = item.range;
        e->qualifier = out.scope[t].name;
        e->name = columns[c].name;
        e->type = columns[c].type;
        e->table = static_cast<int>(t);
        e->column = static_cast<int>(c);
        out.outputs.push_back({.expr = e.get(),
                               .name = {},
                               .type = columns[c].type,
                               .size = columns[c].size,
                               .table = e->table,
                               .column = e->column});
        out.owned.push_back(std::move(e));
      }
    }
    if (!found)
      failAt(item.kind == SelectItem::Kind::Star ? kSyntax : kUnknownName,
             item.kind == SelectItem::Kind::Star ? kBadSelect : kNoValue, item.range);
  }

  static const ColumnInfo* baseColumn(const BoundSelect& out, const Expr& e) {
    if (e.kind != ExprKind::Column) return nullptr;
    return &out.scope[static_cast<std::size_t>(e.table)]
                .info->columns[static_cast<std::size_t>(e.column)];
  }

  // Columns keep their own names; where two would be the same they come out as Table.Column.
  // Expressions without an alias are Expr1000, Expr1001 and so on.
  static void nameOutputs(BoundSelect& out) {
    int unnamed = 1000;
    std::vector<bool> plain(out.outputs.size());
    for (std::size_t i = 0; i < out.outputs.size(); ++i) {
      auto& o = out.outputs[i];
      if (!o.name.empty()) continue;
      if (o.table < 0) {
        o.name = fmt::format("Expr{}", unnamed++);
      } else {
        plain[i] = true;
        o.name = baseColumn(out, *o.expr)->name;
      }
    }
    std::vector<std::string> names;
    for (const auto& o : out.outputs) names.push_back(o.name);
    for (std::size_t i = 0; i < names.size(); ++i) {
      if (!plain[i]) continue;
      for (std::size_t j = 0; j < names.size(); ++j)
        if (j != i && equalNoCase(names[i], names[j])) {
          out.outputs[i].name =
              out.scope[static_cast<std::size_t>(out.outputs[i].table)].name + "." + names[i];
          break;
        }
    }
  }

  Ordering ordering(OrderItem& item, BoundSelect& out) {
    Expr& e = *item.expr;
    if (e.kind == ExprKind::Literal) {
      const auto& literal = literals_[static_cast<std::size_t>(e.literal)];
      const auto* place = std::get_if<std::int64_t>(&literal.value);
      if (place == nullptr || *place < 1 || *place > static_cast<std::int64_t>(out.outputs.size()))
        failAt(kSyntax, kBadOrderBy, e.range);
      return {out.outputs[static_cast<std::size_t>(*place - 1)].expr, item.descending};
    }
    value(e, out.scope, {.aggregates = true});
    return {&e, item.descending};
  }

  void group(const Select& s, BoundSelect& out) const {
    out.grouped = !s.groupBy.empty() || s.having != nullptr;
    for (const auto& o : out.outputs) out.grouped = out.grouped || hasAggregate(*o.expr);
    for (const auto& o : out.order) out.grouped = out.grouped || hasAggregate(*o.expr);
    if (out.grouped) {
      for (const auto& o : out.outputs) requireGrouped(*o.expr, s);
      for (const auto& o : out.order) requireGrouped(*o.expr, s);
      if (s.having) requireGrouped(*s.having, s);
    }
    if (s.distinct == Distinct::Values)
      for (const auto& o : out.order) {
        const bool shown = std::any_of(
            out.outputs.begin(), out.outputs.end(),
            [&](const Output& output) { return same(*output.expr, *o.expr, literals_); });
        if (!shown) failAt(kSyntax, kOrderByDistinct, o.expr->range);
      }
  }

  void requireGrouped(const Expr& e, const Select& s) const {
    if (e.aggregate != Aggregate::None) return;
    for (const auto& g : s.groupBy)
      if (same(*g, e, literals_)) return;
    if (e.kind == ExprKind::Column) failAt(kSyntax, kNotAggregated, e.range);
    for (const auto& arg : e.args) requireGrouped(*arg, s);
  }

  static void keys(const Select& s, BoundSelect& out) {
    std::vector<bool> shown(out.scope.size());
    for (const auto& o : out.outputs)
      walk(*o.expr, [&](const Expr& e) {
        if (e.kind == ExprKind::Column) shown[static_cast<std::size_t>(e.table)] = true;
      });
    for (std::size_t i = 0; i < shown.size(); ++i)
      if (shown[i]) out.named.push_back(static_cast<int>(i));
    out.keyed = !out.grouped && s.distinct != Distinct::Values && !out.named.empty();
    out.rowsOnly = out.keyed && s.distinct == Distinct::Rows && out.named.size() < out.scope.size();
  }

  // ---- INSERT, UPDATE, DELETE ----

  void insert(Insert& s, BoundStatement& out) {
    const TableInfo& info = table(s.table->name, s.table->range);
    out.insertTable = &info;
    for (auto& c : s.columns) {
      if (!c->qualifier.empty() && !equalNoCase(c->qualifier, info.name))
        failAt(kSyntax, kUnknownInsertField, c->range);
      const auto at = info.find(c->name);
      if (!at) failAt(kSyntax, kUnknownInsertField, c->range);
      const int place = static_cast<int>(*at);
      if (std::find(out.insertColumns.begin(), out.insertColumns.end(), place) !=
          out.insertColumns.end())
        failAt(kSyntax, kBadInsert, c->range);
      out.insertColumns.push_back(place);
    }
    if (s.columns.empty())
      for (std::size_t i = 0; i < info.columns.size(); ++i)
        out.insertColumns.push_back(static_cast<int>(i));
    std::size_t given = s.values.size();
    if (s.select) {
      out.select = select(*s.select);
      given = out.select->outputs.size();
      for (std::size_t i = 0; i < std::min(given, out.insertColumns.size()); ++i)
        requireAssignable(info.columns[static_cast<std::size_t>(out.insertColumns[i])],
                          *out.select->outputs[i].expr);
    } else {
      const std::vector<ScopeTable> nothing;
      for (std::size_t i = 0; i < s.values.size(); ++i) {
        value(*s.values[i], nothing, {});
        if (i < out.insertColumns.size())
          requireAssignable(info.columns[static_cast<std::size_t>(out.insertColumns[i])],
                            *s.values[i]);
      }
    }
    if (given != out.insertColumns.size()) failAt(kSyntax, kValueCount, s.table->range);
  }

  // Values that are written out are converted, and refused, when they are bound; of others the
  // families must agree, except that anything can be stored as text.
  void requireAssignable(const ColumnInfo& column, const Expr& e) const {
    if (e.kind == ExprKind::Literal || isTextType(column.type)) return;
    if (familyOf(e.type) == Family::Text && column.stands.empty())
      failAt(kMismatch, kTypeMismatch, e.range);
  }

  void update(Update& s, BoundStatement& out) {
    from(*s.from, out.scope, false);
    if (out.scope.size() != 1) failAt(kSyntax, kBadUpdate, s.from->range);
    for (auto& a : s.assignments) {
      column(*a.column, out.scope, 0);
      for (const auto& other : s.assignments) {
        if (&other == &a) break;
        if (other.column->column == a.column->column) failAt(kSyntax, kBadUpdate, a.column->range);
      }
      value(*a.value, out.scope, {});
      requireAssignable(out.scope[0].info->columns[static_cast<std::size_t>(a.column->column)],
                        *a.value);
    }
    if (s.where) predicate(*s.where, out.scope, {});
  }

  void remove(Delete& s, BoundStatement& out) {
    from(*s.from, out.scope, false);
    if (!s.target.empty()) {
      out.target = -1;
      for (std::size_t i = 0; i < out.scope.size(); ++i)
        if (equalNoCase(out.scope[i].name, s.target)) out.target = static_cast<int>(i);
      if (out.target < 0) failAt(kUnknownName, kNoValue, s.targetRange);
    } else if (out.scope.size() != 1) {
      failAt(kSyntax, kBadDelete, s.from->range);
    }
    if (s.where) predicate(*s.where, out.scope, {});
  }

  static constexpr int kExpressionText = 255;

  std::string_view text_;
  const std::vector<Literal>& literals_;
  const Catalog& catalog_;
  std::vector<std::string> tables_;
};

}  // namespace

bool same(const Expr& a, const Expr& b, const std::vector<Literal>& literals) {
  if (a.kind != b.kind || a.op != b.op || a.flag != b.flag || a.negated != b.negated ||
      a.table != b.table || a.column != b.column || a.aggregate != b.aggregate ||
      a.args.size() != b.args.size())
    return false;
  if (a.kind == ExprKind::Literal) {
    const auto& la = literals[static_cast<std::size_t>(a.literal)];
    const auto& lb = literals[static_cast<std::size_t>(b.literal)];
    // Two lifted literals are the same only as one: their values change from call to call.
    if (a.literal != b.literal && (!la.kept || !lb.kept || la.value != lb.value)) return false;
  }
  for (std::size_t i = 0; i < a.args.size(); ++i)
    if (!same(*a.args[i], *b.args[i], literals)) return false;
  return true;
}

std::string describe(const BoundStatement& bound) {
  std::string out;
  const auto tables = [&](const std::vector<ScopeTable>& scope) {
    for (const auto& t : scope)
      out +=
          fmt::format("table {}{}{}\n", t.name, t.name == t.info->name ? "" : " = " + t.info->name,
                      t.optional ? " (may be missing)" : "");
  };
  tables(bound.scope);
  if (bound.insertTable != nullptr) {
    out += "into " + bound.insertTable->name + ":";
    for (const int c : bound.insertColumns)
      out += " " + bound.insertTable->columns[static_cast<std::size_t>(c)].name;
    out += "\n";
  }
  if (bound.select) {
    const auto& s = *bound.select;
    tables(s.scope);
    for (const auto& o : s.outputs)
      out += fmt::format("column {} {}{}\n", o.name, typeName(o.type),
                         o.table < 0 ? " (expression)" : "");
    out += s.keyed ? (s.rowsOnly ? "distinct keys of" : "keys of") : "no keys";
    if (s.keyed)
      for (const int t : s.named) out += " " + s.scope[static_cast<std::size_t>(t)].name;
    out += "\n";
  }
  return out;
}

BoundStatement bind(Statement statement, std::string_view text,
                    const std::vector<Literal>& literals, const Catalog& catalog) {
  return Binder(text, literals, catalog).run(std::move(statement));
}

}  // namespace kv::jet
