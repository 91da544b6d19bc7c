// SPDX-License-Identifier: Apache-2.0
// A statement whose names are resolved against the catalog: what the emitters and the record sets
// work from.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "common/catalog.h"
#include "jet/syntax/ast.h"

namespace kv::jet {

// A table of a FROM clause, in order of appearance.
struct ScopeTable {
  const TableInfo* info = nullptr;
  std::string name;       // alias, or the table's own name
  bool optional = false;  // on the side of an outer join that may be missing
};

// A column of the result, stars expanded.
struct Output {
  const Expr* expr = nullptr;
  std::string name;
  ColumnType type = ColumnType::Text;
  int size = 0;
  // The base column it shows: places in the scope and in that table; -1 for expressions.
  int table = -1;
  int column = -1;
};

struct Ordering {
  const Expr* expr = nullptr;
  bool descending = false;
};

struct BoundSelect {
  const Select* syntax = nullptr;
  std::vector<ScopeTable> scope;
  std::vector<Output> outputs;
  std::vector<Ordering> order;  // of the ORDER BY clause, ordinals replaced
  bool grouped = false;         // GROUP BY or aggregates
  // Rows can be read again by the keys of the tables in `named`: no grouping, no DISTINCT, some
  // base column.
  bool keyed = false;
  std::vector<int> named;      // scope places of the tables that the outputs show
  bool rowsOnly = false;       // DISTINCTROW that drops rows: one row per combination of `named`
  std::vector<ExprPtr> owned;  // column nodes that stand for expanded stars
};

struct BoundStatement {
  Statement statement;
  std::unique_ptr<BoundSelect> select;  // SELECT, and the SELECT of an INSERT
  std::vector<ScopeTable> scope;        // UPDATE, DELETE: their tables
  int target = 0;  // UPDATE, DELETE: the table that is written, by place in the scope
  const TableInfo* insertTable = nullptr;
  std::vector<int> insertColumns;  // places in insertTable, one per value
  // Every table the statement names, each once, as the catalog spells it.
  std::vector<std::string> tables;
};

// Whether two bound expressions are the same expression.
[[nodiscard]] bool same(const Expr& a, const Expr& b, const std::vector<Literal>& literals);

// A short text of the bound tree for tests and for people: scope, outputs with types, keys.
[[nodiscard]] std::string describe(const BoundStatement& bound);

}  // namespace kv::jet
