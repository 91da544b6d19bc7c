#include "kvdata/jet/emitter.h"

#include <fmt/format.h>

#include <algorithm>

#include "common/text_key.h"

namespace kv::jet {

namespace {

std::string joinTexts(const std::vector<std::string>& parts, std::string_view between = ", ") {
  std::string out;
  for (std::size_t i = 0; i < parts.size(); ++i) {
    if (i > 0) out += between;
    out += parts[i];
  }
  return out;
}

bool isText(const Expr& e) { return e.type && isTextType(*e.type); }
bool isDate(const Expr& e) { return e.type == ColumnType::Date; }
bool isNumber(const Expr& e) { return e.type && !isTextType(*e.type) && !isDate(e); }

// Kinds whose SQL form is a condition, not a value.
bool isCondition(const Expr& e) {
  switch (e.kind) {
    case ExprKind::Not:
    case ExprKind::And:
    case ExprKind::Or:
    case ExprKind::Like:
    case ExprKind::In:
    case ExprKind::Between:
    case ExprKind::IsNull: return true;
    case ExprKind::Binary: return isComparison(e.op);
    case ExprKind::Literal:
    case ExprKind::Null:
    case ExprKind::Truth:
    case ExprKind::Column:
    case ExprKind::Negate:
    case ExprKind::Function: return false;
  }
  return false;
}

// What can leave the type of what it is calculated from.
bool isCalculated(const Expr& e) {
  return e.kind == ExprKind::Negate || e.kind == ExprKind::Function ||
         (e.kind == ExprKind::Binary && !isComparison(e.op));
}

// Whether a column of type `to` takes an expression without a conversion, which would refuse what
// the column cannot hold.
bool isTakenAsItIs(const Expr& e, ColumnType to) {
  if (isText(e) && isTextType(to)) return true;
  if (to == ColumnType::Double) return isNumber(e) && !isCalculated(e);
  if (to == ColumnType::Single && isCalculated(e)) return false;
  return e.type == to && e.kind != ExprKind::Binary;
}

bool isConstant(const Expr& e) {
  if (e.kind == ExprKind::Column || e.aggregate != Aggregate::None) return false;
  return std::all_of(e.args.begin(), e.args.end(),
                     [](const auto& arg) { return isConstant(*arg); });
}

// Writes one SQL text and gathers its parameters.
class Writer {
 public:
  Writer(const std::vector<ScopeTable>& scope, const std::vector<Literal>& literals, bool lifted,
         const Dialect& dialect, int firstParam = 1)
      : scope_(scope), literals_(literals), lifted_(lifted), d_(dialect), firstParam_(firstParam) {}

  SqlText finish(std::string text) { return {std::move(text), std::move(params_), firstParam_}; }

  // While these are set, an expression equal to one of them stands for its group: texts of a group
  // may be spelled in several ways, so one spelling is taken.
  void setGroups(std::vector<const Expr*> groups) { groups_ = std::move(groups); }

  // ---- literals ----

  const Literal& literalOf(const Expr& e) const {
    return literals_[static_cast<std::size_t>(e.literal)];
  }

  std::string param(ParamUse use) {
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

  ValueKind kindOf(const ParamUse& use) const {
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
    if (use.form != ParamUse::Form::Plain) return ValueKind::Text;
    const auto kind = [&](int literal) {
      return literals_[static_cast<std::size_t>(literal)].kind;
    };
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

  std::string literal(const ParamUse& use) {
    if (lifted_ && !literals_[static_cast<std::size_t>(use.literal)].kept) return param(use);
    const SqlValue value = boundValue(use, literals_, {});
    if (std::holds_alternative<std::monostate>(value)) return "NULL";
    if (const auto* whole = std::get_if<std::int64_t>(&value)) return std::to_string(*whole);
    if (const auto* real = std::get_if<double>(&value)) return fmt::format("{:.17g}", *real);
    if (const auto* date = std::get_if<Date>(&value)) return d_.date(*date);
    return d_.text(std::get<std::string>(value));
  }

  // ---- expressions ----

  std::string column(int table, int column) const {
    const auto& t = scope_[static_cast<std::size_t>(table)];
    const auto& c = t.info->columns[static_cast<std::size_t>(column)];
    if (c.stands.empty()) return quotedName(t.name) + "." + quotedName(c.name);
    const auto& stored = t.info->columns[*t.info->find(c.stands)];
    return d_.convert(quotedName(t.name) + "." + quotedName(stored.name), stored.type, c.type);
  }

  std::string key(int table) const {
    const auto& t = scope_[static_cast<std::size_t>(table)];
    return quotedName(t.name) + "." + quotedName(t.info->key);
  }

  const Expr* groupOf(const Expr& e) const {
    for (const auto* g : groups_)
      if (same(*g, e, literals_)) return g;
    return nullptr;
  }

  std::string value(const Expr& e) {
    if (isText(e) && !isConstant(e) && groupOf(e) != nullptr) {
      const auto groups = std::move(groups_);
      groups_.clear();
      std::string inner = value(e);
      groups_ = groups;
      return d_.anySpelling(inner);
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
  std::pair<std::string, std::string> values(const Expr& e) {
    std::string left = operand(*e.args[0]);
    std::string right = operand(*e.args[1]);
    return {std::move(left), std::move(right)};
  }

  std::string operand(const Expr& e) {
    std::string sql = value(e);
    const bool bare = e.kind == ExprKind::Column || e.kind == ExprKind::Function;
    return bare && e.type ? d_.operand(sql, *e.type) : sql;
  }

  std::string aggregate(const Expr& e) {
    const auto groups = std::move(groups_);  // inside an aggregate rows are themselves
    groups_.clear();
    const bool sums = e.aggregate == Aggregate::Sum || e.aggregate == Aggregate::Avg;
    std::string argument = e.flag ? "*" : sums ? operand(*e.args[0]) : value(*e.args[0]);
    groups_ = groups;
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

  std::string fold(const Expr& e) {
    if (e.kind == ExprKind::Literal)
      return literal({.form = ParamUse::Form::Fold, .literal = e.literal});
    return e.kind == ExprKind::Null ? "NULL" : d_.fold(value(e));
  }

  std::vector<std::string> order(const Expr& e) {
    if (e.kind == ExprKind::Literal) {
      std::vector<std::string> out;
      for (const auto form : d_.orderForms())
        out.push_back(literal({.form = form, .literal = e.literal}));
      return out;
    }
    return d_.order(value(e));
  }

  static std::string row(const std::vector<std::string>& parts) {
    return parts.size() == 1 ? parts[0] : "(" + joinTexts(parts) + ")";
  }

  // Both sides in the form in which they compare under `op`.
  std::pair<std::string, std::string> sides(Op op, const Expr& a, const Expr& b) {
    if (isText(a) && isText(b)) {
      const bool equality = op == Op::Equal || op == Op::NotEqual;
      std::string left = equality ? fold(a) : row(order(a));
      std::string right = equality ? fold(b) : row(order(b));
      return {std::move(left), std::move(right)};
    }
    std::string left = value(a);
    std::string right = value(b);
    if (isDate(a) && isNumber(b)) left = d_.dayCount(left);
    if (isNumber(a) && isDate(b)) right = d_.dayCount(right);
    return {std::move(left), std::move(right)};
  }

  std::string compare(Op op, const Expr& a, const Expr& b) {
    const auto [left, right] = sides(op, a, b);
    return fmt::format("({} {} {})", left, opText(op), right);
  }

  std::string condition(const Expr& e) {
    switch (e.kind) {
      case ExprKind::Literal:
      case ExprKind::Column:
      case ExprKind::Negate:
      case ExprKind::Function: return "(" + value(e) + " <> 0)";
      case ExprKind::Null: return "(NULL = 0)";
      case ExprKind::Truth: return e.flag ? "(1 = 1)" : "(1 = 0)";
      case ExprKind::Binary:
        return isComparison(e.op) ? compare(e.op, *e.args[0], *e.args[1])
                                  : "(" + value(e) + " <> 0)";
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
  std::string balanced(const std::vector<ExprPtr>& args, std::size_t from, std::size_t to,
                       std::string_view word) {
    if (to - from == 1) return condition(*args[from]);
    const auto middle = from + (to - from) / 2;
    std::string out = "(";
    out += balanced(args, from, middle, word);
    out += word;
    out += balanced(args, middle, to, word);
    return out + ")";
  }

  // "c = 1 Or c = 2 Or ..." with literals is a list, which engines look up faster than they test a
  // chain.
  static const Expr* sameColumnList(const Expr& e) {
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

  // `x In (list)`: the list is in e.args[1...], or in the right sides of a chain of comparisons.
  std::string in(const Expr& x, const Expr& e, bool chain) {
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

  std::string like(const Expr& e) {
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
  std::string between(const Expr& e) {
    const Expr& x = *e.args[0];
    const Expr& a = *e.args[1];
    const Expr& b = *e.args[2];
    std::string out;
    const auto plain = [&](const Expr& l) { return literalOf(l).kind; };
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
          parts.push_back(literal(
              {.form = form, .literal = a.literal, .other = b.literal, .greater = greater}));
        return row(parts);
      };
      const std::string left = isText(x) ? row(order(x)) : value(x);
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

  // ---- clauses ----

  std::string from(const TableRef& ref) {
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
  std::string join(const TableRef& ref, std::string_view word) {
    std::string out = from(*ref.left);
    out += word;
    const bool nested = ref.right->kind != TableRef::Kind::Table;
    out += nested ? "(" + from(*ref.right) + ")" : from(*ref.right);
    if (ref.on) out += " ON " + condition(*ref.on);
    return out;
  }

  std::vector<std::string> orderBy(const std::vector<Ordering>& order) {
    std::vector<std::string> out;
    for (const auto& o : order) append(out, *o.expr, o.descending);
    return out;
  }

  void append(std::vector<std::string>& out, const Expr& e, bool descending) {
    const auto keys = isText(e) ? this->order(e) : std::vector{value(e)};
    for (const auto& key : keys) out.push_back(key + d_.direction(descending));
  }

  // ---- SELECT ----

  struct Shape {
    std::vector<std::string> list;   // the select list
    std::vector<std::string> group;  // GROUP BY
    std::vector<std::string> order;  // ORDER BY as asked for
    std::vector<std::string> ties;   // and what makes it total
    int limit = 0;
  };

  std::string assemble(const BoundSelect& s, Shape shape) {
    const Select& syntax = *s.syntax;
    std::string tail;
    const auto groups = std::move(groups_);  // before grouping, rows are themselves
    groups_.clear();
    if (syntax.from) tail += " FROM " + from(*syntax.from);
    if (syntax.where) tail += " WHERE " + condition(*syntax.where);
    groups_ = groups;
    if (!shape.group.empty()) tail += " GROUP BY " + joinTexts(shape.group);
    if (syntax.having) tail += " HAVING " + condition(*syntax.having);
    auto total = shape.order;
    for (auto& tie : shape.ties)
      if (std::find(total.begin(), total.end(), tie) == total.end()) total.push_back(tie);
    std::string out;
    if (syntax.top) {
      out = top(syntax, shape, total, tail);
    } else {
      out = "SELECT " + joinTexts(shape.list) + tail;
      if (!total.empty()) out += " ORDER BY " + joinTexts(total);
    }
    if (shape.limit > 0) out += fmt::format(" LIMIT {}", shape.limit);
    return out;
  }

  // TOP n keeps every row that ties with the last one on the ORDER BY; without one it is the first
  // n.
  std::string top(const Select& syntax, const Shape& shape, const std::vector<std::string>& total,
                  const std::string& tail) const {
    std::vector<std::string> outer;
    std::string inner;
    for (std::size_t i = 0; i < shape.list.size(); ++i) {
      outer.push_back(fmt::format("c{}", i));
      inner += fmt::format("{} AS c{}, ", shape.list[i], i);
    }
    const std::string sequence = total.empty()
                                     ? "ROW_NUMBER() OVER ()"
                                     : "ROW_NUMBER() OVER (ORDER BY " + joinTexts(total) + ")";
    const std::string rank =
        shape.order.empty() ? sequence : "RANK() OVER (ORDER BY " + joinTexts(shape.order) + ")";
    const std::string limit = syntax.topPercent
                                  ? fmt::format("(kv_rank - 1) * 100 < {} * kv_count", *syntax.top)
                                  : fmt::format("kv_rank <= {}", *syntax.top);
    return fmt::format(
        "SELECT {} FROM (SELECT {}{} AS kv_seq, {} AS kv_rank{}{}) AS kv_top WHERE {} ORDER BY "
        "kv_seq",
        joinTexts(outer), inner, sequence, rank,
        syntax.topPercent ? ", COUNT(*) OVER () AS kv_count" : "", tail, limit);
  }

  std::vector<std::string> outputs(const BoundSelect& s) {
    std::vector<std::string> out;
    for (const auto& o : s.outputs) out.push_back(value(*o.expr));
    return out;
  }

  std::vector<std::string> keys(const std::vector<int>& tables) const {
    std::vector<std::string> out;
    out.reserve(tables.size());
    for (const int t : tables) out.push_back(key(t));
    return out;
  }

  std::vector<std::string> allKeys(const BoundSelect& s) const {
    std::vector<std::string> out;
    for (std::size_t t = 0; t < s.scope.size(); ++t) out.push_back(key(static_cast<int>(t)));
    return out;
  }

  // Order and ties of a select whose rows are rows of tables.
  void orderRows(const BoundSelect& s, Shape& shape) {
    if (!s.rowsOnly) {
      shape.order = orderBy(s.order);
      shape.ties = allKeys(s);
      return;
    }
    shape.group = keys(s.named);
    for (const auto& o : s.order) {
      std::vector<std::string> own;
      append(own, *o.expr, o.descending);
      if (!ofNamed(s,
                   *o.expr))  // a column of a table that is not shown: the first of the combination
        for (auto& sql : own) {
          const auto suffix = d_.direction(o.descending);
          sql = fmt::format("MIN({}){}", sql.substr(0, sql.size() - suffix.size()), suffix);
        }
      shape.order.insert(shape.order.end(), own.begin(), own.end());
    }
    shape.ties = shape.group;
  }

  static bool ofNamed(const BoundSelect& s, const Expr& e) {
    if (e.kind == ExprKind::Column &&
        std::find(s.named.begin(), s.named.end(), e.table) == s.named.end())
      return false;
    return std::all_of(e.args.begin(), e.args.end(),
                       [&](const auto& arg) { return ofNamed(s, *arg); });
  }

  // Group keys of a list of expressions: fold keys of text, constants left out.
  std::vector<std::string> groupKeys(const std::vector<const Expr*>& exprs) {
    std::vector<std::string> out;
    for (const auto* e : exprs)
      if (!isConstant(*e)) out.push_back(isText(*e) ? fold(*e) : value(*e));
    return out;
  }

  // The groups of a grouped select, and its outputs. Constants alone make one group of any rows and
  // none of no rows, which is why they cannot be left out; as they stand, an engine would take them
  // for ordinals. HAVING alone makes one group always, which engines believe only where something
  // is aggregated.
  std::vector<const Expr*> grouped(const BoundSelect& s, Shape& shape) {
    std::vector<const Expr*> groups;
    for (const auto& g : s.syntax->groupBy) groups.push_back(g.get());
    shape.group = groupKeys(groups);
    if (shape.group.empty() && !groups.empty()) shape.group.emplace_back("(0 + 0)");
    setGroups(groups);
    shape.list = outputs(s);
    if (groups.empty() && std::all_of(s.outputs.begin(), s.outputs.end(),
                                      [](const Output& o) { return isConstant(*o.expr); }))
      shape.list[0] = "CASE WHEN COUNT(*) >= 0 THEN " + shape.list[0] + " END";
    return groups;
  }

  // For rows that are inserted any one order will do.
  std::string whole(const BoundSelect& s, bool inserted = false) {
    Shape shape;
    if (s.syntax->distinct == Distinct::Values) return distinct(s, inserted);
    if (s.grouped) {
      const auto groups = grouped(s, shape);
      shape.order = orderBy(s.order);
      for (const auto* g : groups)
        if (!isConstant(*g)) append(shape.ties, *g, false);
      return assemble(s, std::move(shape));
    }
    shape.list = outputs(s);
    orderRows(s, shape);
    return assemble(s, std::move(shape));
  }

  // DISTINCT is grouping by all outputs. Over a grouped select, or with constants alone, there is
  // nothing to group by, and the rows as they are shown are compared.
  std::string distinct(const BoundSelect& s, bool inserted) {
    std::vector<const Expr*> all;
    for (const auto& o : s.outputs) all.push_back(o.expr);
    Shape shape;
    if (s.grouped) {
      grouped(s, shape);
    } else {
      shape.group = groupKeys(all);
      setGroups(all);
      shape.list = outputs(s);
    }
    if (s.grouped && !s.syntax->top) return distinctGroups(s, std::move(shape), all);
    const bool plain = !s.grouped && shape.group.empty();
    shape.order = orderBy(s.order);
    if (inserted && !s.grouped && !s.syntax->top && shape.order.empty()) {
      // The groups' own keys, which need not be made anew of their values.
      for (const auto& key : shape.group) shape.ties.push_back(key + d_.direction(false));
    } else {
      for (const auto* e : all)
        if (!isConstant(*e)) append(shape.ties, *e, false);
    }
    if (plain && !shape.list.empty() && !s.syntax->top) {
      shape.list[0] = "DISTINCT " + shape.list[0];
      shape.order.clear();
      shape.ties.clear();
    }
    return assemble(s, std::move(shape));
  }

  // The rows that groups give, each once: grouped again around the groups, with what they are
  // ordered by beside what they show.
  std::string distinctGroups(const BoundSelect& s, Shape shape,
                             const std::vector<const Expr*>& outputs) {
    std::vector<std::string> keys;
    std::vector<std::string> directions;
    const auto orderBy = [&](const Expr& e, bool descending) {
      for (auto& key : isText(e) ? order(e) : std::vector{value(e)}) {
        if (std::find(keys.begin(), keys.end(), key) != keys.end()) continue;
        keys.push_back(std::move(key));
        directions.push_back(d_.direction(descending));
      }
    };
    for (const auto& o : s.order) orderBy(*o.expr, o.descending);
    for (const auto* e : outputs)
      if (!isConstant(*e)) orderBy(*e, false);
    std::vector<std::string> shown;
    std::vector<std::string> grouped;
    std::vector<std::string> ordered;
    for (std::size_t i = 0; i < shape.list.size(); ++i) {
      shown.push_back(fmt::format("c{}", i));
      shape.list[i] += " AS " + shown.back();
    }
    grouped = shown;
    for (std::size_t i = 0; i < keys.size(); ++i) {
      grouped.push_back(fmt::format("o{}", i));
      ordered.push_back(grouped.back() + directions[i]);
      shape.list.push_back(keys[i] + " AS " + grouped.back());
    }
    std::string out = fmt::format("SELECT {} FROM ({}) AS kv_groups GROUP BY {}", joinTexts(shown),
                                  assemble(s, std::move(shape)), joinTexts(grouped));
    if (!ordered.empty()) out += " ORDER BY " + joinTexts(ordered);
    return out;
  }

  std::string keysOnly(const BoundSelect& s) {
    Shape shape;
    shape.list = keys(s.named);
    orderRows(s, shape);
    return assemble(s, std::move(shape));
  }

  std::string head(const BoundSelect& s) {
    Shape shape;
    shape.list = outputs(s);
    for (auto& k : keys(s.named)) shape.list.push_back(std::move(k));
    orderRows(s, shape);
    shape.limit = kHeadRows + 1;
    return assemble(s, std::move(shape));
  }

  std::string rows(const BoundSelect& s) {
    auto list = outputs(s);
    for (auto& k : keys(s.named)) list.push_back(std::move(k));
    std::string out = "SELECT " + joinTexts(list) + " FROM " + d_.keyList(s.named.size());
    for (std::size_t i = 0; i < s.named.size(); ++i) {
      const auto& t = s.scope[static_cast<std::size_t>(s.named[i])];
      out += fmt::format(" LEFT JOIN {} AS {} ON {} = k.k{}", quotedName(t.info->name),
                         quotedName(t.name), key(s.named[i]), i + 1);
    }
    return out + d_.inKeyListOrder();
  }

  // ---- values to be stored ----

  std::string assigned(const TableInfo& table, const ColumnInfo& given, const Expr& e) {
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

 private:
  const std::vector<ScopeTable>& scope_;
  const std::vector<Literal>& literals_;
  bool lifted_;
  const Dialect& d_;
  int firstParam_;
  std::vector<ParamUse> params_;
  std::vector<const Expr*> groups_;
};

SqlText emitInsert(const BoundStatement& bound, const std::vector<Literal>& literals, bool lifted,
                   const Dialect& dialect) {
  static const std::vector<ScopeTable> kNoScope;
  const Insert& s = *bound.statement.insert;
  const TableInfo& table = *bound.insertTable;
  Writer writer(bound.select ? bound.select->scope : kNoScope, literals, lifted, dialect);
  // Two names of one stored column: the one that comes last is written.
  const auto storedName = [&](std::size_t i) -> const std::string& {
    const auto& c = table.columns[static_cast<std::size_t>(bound.insertColumns[i])];
    return c.stands.empty() ? c.name : c.stands;
  };
  std::vector<std::string> names;
  std::vector<std::string> values;
  for (std::size_t i = 0; i < bound.insertColumns.size(); ++i) {
    bool overwritten = false;
    for (std::size_t j = i + 1; j < bound.insertColumns.size(); ++j)
      overwritten = overwritten || storedName(i) == storedName(j);
    if (overwritten) continue;
    const auto& c = table.columns[static_cast<std::size_t>(bound.insertColumns[i])];
    names.push_back(quotedName(storedName(i)));
    if (bound.select)
      values.push_back(fmt::format("{}", i));
    else
      values.push_back(writer.assigned(table, c, *s.values[i]));
  }
  std::string out = fmt::format("INSERT INTO {} ({}) ", quotedName(table.name), joinTexts(names));
  if (!bound.select) return writer.finish(out + "VALUES (" + joinTexts(values) + ")");
  // The outputs take the form of their columns: the select list is written over with it.
  BoundSelect& select = *bound.select;
  std::string text;
  if (!select.grouped && select.syntax->distinct != Distinct::Values) {
    Writer::Shape shape;
    for (const auto& place : values) {
      const auto i = static_cast<std::size_t>(std::stoul(place));
      shape.list.push_back(
          writer.assigned(table, table.columns[static_cast<std::size_t>(bound.insertColumns[i])],
                          *select.outputs[i].expr));
    }
    writer.orderRows(select, shape);
    text = writer.assemble(select, std::move(shape));
  } else {
    text = writer.whole(select, true);
    bool converted = values.size() != select.outputs.size();
    std::vector<std::string> list;
    for (const auto& place : values) {
      const auto i = static_cast<std::size_t>(std::stoul(place));
      const auto& c = table.columns[static_cast<std::size_t>(bound.insertColumns[i])];
      const auto& o = select.outputs[i];
      const bool asIs = c.stands.empty() && o.expr->type && isTakenAsItIs(*o.expr, c.type);
      converted = converted || !asIs;
      const auto name = quotedName(fmt::format("c{}", i));
      const auto& storedColumn = c.stands.empty() ? c : table.columns[*table.find(c.stands)];
      if (asIs)
        list.push_back(name);
      else if (o.expr->type)
        list.push_back(dialect.convert(name, *o.expr->type, storedColumn.type));
      else  // nothing but Null
        list.emplace_back(storedColumn.type == ColumnType::Boolean ? "0" : "NULL");
    }
    if (converted) {
      std::string named;
      for (std::size_t i = 0; i < select.outputs.size(); ++i)
        named += (i > 0 ? ", " : "") + quotedName(fmt::format("c{}", i));
      text = fmt::format("WITH kv_rows ({}) AS ({}) SELECT {} FROM kv_rows", named, text,
                         joinTexts(list));
    }
  }
  return writer.finish(out + text);
}

SqlText emitUpdate(const BoundStatement& bound, const std::vector<Literal>& literals, bool lifted,
                   const Dialect& dialect) {
  const Update& s = *bound.statement.update;
  const TableInfo& table = *bound.scope[0].info;
  Writer writer(bound.scope, literals, lifted, dialect);
  std::string out = "UPDATE " + writer.from(*s.from) + " SET ";
  for (std::size_t i = 0; i < s.assignments.size(); ++i) {
    const auto& column = table.columns[static_cast<std::size_t>(s.assignments[i].column->column)];
    if (i > 0) out += ", ";
    out += quotedName(column.stands.empty() ? column.name : column.stands) + " = ";
    out += writer.assigned(table, column, *s.assignments[i].value);
  }
  if (s.where) out += " WHERE " + writer.condition(*s.where);
  return writer.finish(std::move(out));
}

SqlText emitDelete(const BoundStatement& bound, const std::vector<Literal>& literals, bool lifted,
                   const Dialect& dialect) {
  const Delete& s = *bound.statement.remove;
  Writer writer(bound.scope, literals, lifted, dialect);
  const std::string where = s.where ? " WHERE " + writer.condition(*s.where) : std::string();
  if (bound.scope.size() == 1) return writer.finish("DELETE FROM " + writer.from(*s.from) + where);
  const auto& target = bound.scope[static_cast<std::size_t>(bound.target)];
  return writer.finish(fmt::format("DELETE FROM {} WHERE {} IN (SELECT {} FROM {}{})",
                                   quotedName(target.info->name), quotedName(target.info->key),
                                   writer.key(bound.target), writer.from(*s.from), where));
}

}  // namespace

std::string quotedName(std::string_view name) {
  std::string out = "\"";
  for (const char c : name) {
    if (c == '"') out += '"';
    out += c;
  }
  return out + "\"";
}

Emitted emit(const BoundStatement& bound, const std::vector<Literal>& literals, bool lifted,
             const Dialect& dialect) {
  Emitted out;
  switch (bound.statement.kind) {
    case StatementKind::Insert: out.whole = emitInsert(bound, literals, lifted, dialect); break;
    case StatementKind::Update: out.whole = emitUpdate(bound, literals, lifted, dialect); break;
    case StatementKind::Delete: out.whole = emitDelete(bound, literals, lifted, dialect); break;
    case StatementKind::Select: {
      const BoundSelect& s = *bound.select;
      const auto writer = [&](int firstParam) {
        return Writer(s.scope, literals, lifted, dialect, firstParam);
      };
      if (!s.keyed) {
        auto w = writer(1);
        out.whole = w.finish(w.whole(s));
        break;
      }
      auto keys = writer(1);
      out.keys = keys.finish(keys.keysOnly(s));
      auto head = writer(1);
      out.head = head.finish(head.head(s));
      auto rows = writer(2);  // parameter 1 is the list of keys
      out.rows = rows.finish(rows.rows(s));
      break;
    }
  }
  return out;
}

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

std::string emitInsertWithKeys(const TableInfo& table, std::span<const int> columns,
                               std::size_t rows, const Dialect& dialect) {
  std::vector<std::string> names = {quotedName(table.key)};
  for (const int c : columns)
    names.push_back(quotedName(table.columns[static_cast<std::size_t>(c)].name));
  int next = 1;
  std::vector<std::string> tuples;
  for (std::size_t r = 0; r < rows; ++r) {
    std::vector<std::string> values;
    for (std::size_t i = 0; i < names.size(); ++i) values.push_back(dialect.parameter(next++));
    tuples.push_back("(" + joinTexts(values) + ")");
  }
  return fmt::format("INSERT INTO {} ({}) VALUES {}", quotedName(table.name), joinTexts(names),
                     joinTexts(tuples));
}

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

}  // namespace kv::jet
