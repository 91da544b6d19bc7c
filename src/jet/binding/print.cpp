// SPDX-License-Identifier: Apache-2.0
#include <fmt/format.h>

#include "common/text.h"
#include "jet/syntax/ast.h"

namespace kv::jet {

namespace {

// A name that holds the closing bracket was written between backticks.
std::string bracketed(const std::string& name) {
  return name.find(']') == std::string::npos ? "[" + name + "]" : "`" + name + "`";
}

class Printer {
 public:
  explicit Printer(const std::vector<Literal>& literals) : literals_(literals) {}

  std::string expr(const Expr& e) {
    switch (e.kind) {
      case ExprKind::Literal: return literal(literals_[static_cast<std::size_t>(e.literal)]);
      case ExprKind::Null: return "Null";
      case ExprKind::Truth: return e.flag ? "True" : "False";
      case ExprKind::Column:
        return (e.qualifier.empty() ? "" : bracketed(e.qualifier) + ".") + bracketed(e.name);
      case ExprKind::Negate: return "(-" + expr(*e.args[0]) + ")";
      case ExprKind::Binary:
        return fmt::format("({} {} {})", expr(*e.args[0]), opText(e.op), expr(*e.args[1]));
      case ExprKind::Not: return "(Not " + expr(*e.args[0]) + ")";
      case ExprKind::And: return "(" + list(e.args, 0, " And ") + ")";
      case ExprKind::Or: return "(" + list(e.args, 0, " Or ") + ")";
      case ExprKind::Like:
        return fmt::format("({} {}Like {})", expr(*e.args[0]), e.negated ? "Not " : "",
                           expr(*e.args[1]));
      case ExprKind::In:
        return fmt::format("({} {}In ({}))", expr(*e.args[0]), e.negated ? "Not " : "",
                           list(e.args, 1, ", "));
      case ExprKind::Between:
        return fmt::format("({} {}Between {} And {})", expr(*e.args[0]), e.negated ? "Not " : "",
                           expr(*e.args[1]), expr(*e.args[2]));
      case ExprKind::IsNull:
        return fmt::format("({} Is {}Null)", expr(*e.args[0]), e.negated ? "Not " : "");
      case ExprKind::Function:
        return fmt::format("{}({})", e.name, e.flag ? "*" : list(e.args, 0, ", "));
    }
    return {};
  }

  std::string select(const Select& s) {
    std::string out = "Select ";
    if (s.distinct == Distinct::Values) out += "Distinct ";
    if (s.distinct == Distinct::Rows) out += "DistinctRow ";
    if (s.top) out += fmt::format("Top {} {}", *s.top, s.topPercent ? "Percent " : "");
    for (std::size_t i = 0; i < s.items.size(); ++i) {
      const auto& item = s.items[i];
      if (i > 0) out += ", ";
      switch (item.kind) {
        case SelectItem::Kind::Star: out += "*"; break;
        case SelectItem::Kind::TableStar: out += bracketed(item.qualifier) + ".*"; break;
        case SelectItem::Kind::Expression:
          out += expr(*item.expr);
          if (!item.alias.empty()) out += " As " + bracketed(item.alias);
          break;
      }
    }
    if (s.from) out += " From " + from(*s.from);
    if (s.where) out += " Where " + expr(*s.where);
    if (!s.groupBy.empty()) out += " Group By " + list(s.groupBy, 0, ", ");
    if (s.having) out += " Having " + expr(*s.having);
    for (std::size_t i = 0; i < s.orderBy.size(); ++i) {
      out += i == 0 ? " Order By " : ", ";
      out += expr(*s.orderBy[i].expr);
      if (s.orderBy[i].descending) out += " Desc";
    }
    return out;
  }

  std::string from(const TableRef& t) {
    // A comma binds less than a join does, and from the left.
    const auto side = [&](const TableRef& s) {
      return s.kind == TableRef::Kind::Cross ? "(" + from(s) + ")" : from(s);
    };
    const auto joined = [&](std::string_view word) {
      return fmt::format("({} {} {} On {})", side(*t.left), word, side(*t.right), expr(*t.on));
    };
    switch (t.kind) {
      case TableRef::Kind::Table:
        return bracketed(t.name) + (t.alias.empty() ? "" : " As " + bracketed(t.alias));
      case TableRef::Kind::Inner: return joined("Inner Join");
      case TableRef::Kind::Left: return joined("Left Join");
      case TableRef::Kind::Right: return joined("Right Join");
      case TableRef::Kind::Cross: return from(*t.left) + ", " + side(*t.right);
    }
    return {};
  }

  std::string statement(const Statement& s) {
    switch (s.kind) {
      case StatementKind::Select: return select(*s.select);
      case StatementKind::Insert: {
        std::string out = "Insert Into " + from(*s.insert->table);
        if (!s.insert->columns.empty()) out += " (" + list(s.insert->columns, 0, ", ") + ")";
        if (s.insert->select) return out + " " + select(*s.insert->select);
        return out + " Values (" + list(s.insert->values, 0, ", ") + ")";
      }
      case StatementKind::Update: {
        std::string out = "Update " + from(*s.update->from) + " Set ";
        for (std::size_t i = 0; i < s.update->assignments.size(); ++i) {
          if (i > 0) out += ", ";
          out += expr(*s.update->assignments[i].column) + " = " +
                 expr(*s.update->assignments[i].value);
        }
        if (s.update->where) out += " Where " + expr(*s.update->where);
        return out;
      }
      case StatementKind::Delete: {
        std::string out = "Delete ";
        out += s.remove->target.empty() ? "*" : bracketed(s.remove->target) + ".*";
        out += " From " + from(*s.remove->from);
        if (s.remove->where) out += " Where " + expr(*s.remove->where);
        return out;
      }
    }
    return {};
  }

 private:
  std::string list(const std::vector<ExprPtr>& exprs, std::size_t first, std::string_view between) {
    std::string out;
    for (std::size_t i = first; i < exprs.size(); ++i) {
      if (i > first) out += between;
      out += expr(*exprs[i]);
    }
    return out;
  }

  static std::string literal(const Literal& l) {
    switch (l.kind) {
      case LiteralKind::Text: return "'" + doubledQuotes(std::get<std::string>(l.value)) + "'";
      case LiteralKind::Whole: return std::to_string(std::get<std::int64_t>(l.value));
      case LiteralKind::Real: {
        std::string out = fmt::format("{}", std::get<double>(l.value));
        if (out.find_first_of(".e") == std::string::npos) out += ".0";
        return out;
      }
      case LiteralKind::Date: return "#" + isoText(std::get<Date>(l.value)) + "#";
    }
    return {};
  }

  const std::vector<Literal>& literals_;
};

}  // namespace

std::string_view opText(Op op) noexcept {
  switch (op) {
    case Op::Equal: return "=";
    case Op::NotEqual: return "<>";
    case Op::Less: return "<";
    case Op::LessEqual: return "<=";
    case Op::Greater: return ">";
    case Op::GreaterEqual: return ">=";
    case Op::Add: return "+";
    case Op::Subtract: return "-";
    case Op::Multiply: return "*";
    case Op::Divide: return "/";
    case Op::WholeDivide: return "\\";
    case Op::Modulo: return "Mod";
    case Op::Power: return "^";
    case Op::Concat: return "&";
    case Op::Xor: return "Xor";
    case Op::Eqv: return "Eqv";
    case Op::Imp: return "Imp";
  }
  return "";
}

std::string print(const Statement& statement, const std::vector<Literal>& literals) {
  return Printer(literals).statement(statement);
}

std::string print(const Expr& expr, const std::vector<Literal>& literals) {
  return Printer(literals).expr(expr);
}

}  // namespace kv::jet
