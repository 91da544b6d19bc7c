// SPDX-License-Identifier: Apache-2.0
// The syntax tree of a statement: a closed set of nodes, named after the grammar. The parser fills
// names and ranges; the binder fills the fields marked "bound".
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "common/catalog.h"
#include "common/error.h"
#include "jet/syntax/token.h"

namespace kv::jet {

struct Expr;
using ExprPtr = std::unique_ptr<Expr>;

enum class ExprKind : std::uint8_t {
  Literal,   // literal
  Null,      // the word Null
  Truth,     // True, Yes, On (flag set) or False, No, Off
  Column,    // [qualifier.]name
  Negate,    // -args[0]
  Binary,    // args[0] op args[1], for arithmetic and comparison
  Not,       // Not args[0]
  And,       // a flat list of any length
  Or,        // a flat list of any length
  Like,      // args[0] [Not] Like args[1]
  In,        // args[0] [Not] In (args[1], ...)
  Between,   // args[0] [Not] Between args[1] And args[2]
  IsNull,    // args[0] Is [Not] Null, and the function of that name
  Function,  // name(args), or name(*) with flag set
};

enum class Op : std::uint8_t {
  Equal,
  NotEqual,
  Less,
  LessEqual,
  Greater,
  GreaterEqual,
  Add,
  Subtract,
  Multiply,
  Divide,
  WholeDivide,
  Modulo,
  Power,
  Concat,
  Xor,
  Eqv,
  Imp,
};

[[nodiscard]] std::string_view opText(Op op) noexcept;
[[nodiscard]] constexpr bool isComparison(Op op) noexcept { return op <= Op::GreaterEqual; }

enum class Aggregate : std::uint8_t { None, Count, Sum, Avg, Min, Max };

struct Expr {
  ExprKind kind = ExprKind::Null;
  TextRange range;
  Op op = Op::Equal;
  bool flag = false;     // Truth: true; Function: (*)
  bool negated = false;  // Like, In, Between, IsNull
  int literal = -1;
  int depth = 1;          // levels of nesting below and with this node; flat lists count as one
  std::string qualifier;  // Column
  std::string name;       // Column, Function
  std::vector<ExprPtr> args;

  // Bound:
  std::optional<ColumnType> type;  // nothing for Null
  int table = -1;                  // Column: place of its table in the scope
  int column = -1;                 // Column: place in that table
  Aggregate aggregate = Aggregate::None;
};

struct SelectItem {
  enum class Kind : std::uint8_t { Expression, Star, TableStar };
  Kind kind = Kind::Expression;
  TextRange range;
  std::string qualifier;  // TableStar
  ExprPtr expr;           // Expression
  std::string alias;
};

struct TableRef;
using TableRefPtr = std::unique_ptr<TableRef>;

struct TableRef {
  enum class Kind : std::uint8_t { Table, Inner, Left, Right, Cross };
  Kind kind = Kind::Table;
  TextRange range;
  std::string name;   // Table
  std::string alias;  // Table; empty for none
  TableRefPtr left;
  TableRefPtr right;
  ExprPtr on;
  int depth = 1;

  // Bound:
  int table = -1;  // Table: place in the scope
};

struct OrderItem {
  ExprPtr expr;
  bool descending = false;
};

enum class Distinct : std::uint8_t { All, Values, Rows };

struct Select {
  Distinct distinct = Distinct::All;
  std::optional<std::int64_t> top;
  bool topPercent = false;
  std::vector<SelectItem> items;
  TableRefPtr from;
  ExprPtr where;
  std::vector<ExprPtr> groupBy;
  ExprPtr having;
  std::vector<OrderItem> orderBy;
};

struct Insert {
  TableRefPtr table;
  std::vector<ExprPtr> columns;  // Column nodes; empty when left out
  std::vector<ExprPtr> values;   // VALUES form
  std::unique_ptr<Select> select;
};

struct Assignment {
  ExprPtr column;
  ExprPtr value;
};

struct Update {
  TableRefPtr from;
  std::vector<Assignment> assignments;
  ExprPtr where;
};

struct Delete {
  std::string target;  // the table of "DELETE target.* FROM"; empty for the others
  TextRange targetRange;
  TableRefPtr from;
  ExprPtr where;
};

enum class StatementKind : std::uint8_t { Select, Insert, Update, Delete };

struct Statement {
  StatementKind kind = StatementKind::Select;
  std::unique_ptr<Select> select;
  std::unique_ptr<Insert> insert;
  std::unique_ptr<Update> update;
  std::unique_ptr<Delete> remove;
};

// The statement written out again in the dialect, fully parenthesised, with its literals. Parsing
// it gives the same tree, which is how the tests know that the parser and this agree.
[[nodiscard]] std::string print(const Statement& statement, const std::vector<Literal>& literals);
[[nodiscard]] std::string print(const Expr& expr, const std::vector<Literal>& literals);

}  // namespace kv::jet
