// SPDX-License-Identifier: Apache-2.0
// Writes the texts of one SELECT: whole, by keys, its first rows, its rows by key.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "jet/binding/bound.h"
#include "jet/emit/expression_writer.h"

namespace kv::jet {

class SelectWriter {
 public:
  // Both must outlive this.
  SelectWriter(const BoundSelect& select, ExpressionWriter& expressions)
      : s_(select), w_(expressions), d_(expressions.dialect()) {}

  // All rows in their order.
  [[nodiscard]] std::string whole();
  // All rows in any one order, for a statement that stores them.
  [[nodiscard]] std::string stored();
  // The rows of a select that is neither grouped nor Distinct, with another select list.
  [[nodiscard]] std::string rowsWith(std::vector<std::string> list);
  // The keys of the named tables for every row.
  [[nodiscard]] std::string keysOnly();
  // Outputs and keys of the first rows.
  [[nodiscard]] std::string head();
  // Outputs and keys of the rows in the list of keys that is parameter 1.
  [[nodiscard]] std::string rowsByKey();

 private:
  // An expression that rows are ordered by, and what follows it.
  struct OrderKey {
    std::string sql;
    std::string direction;

    [[nodiscard]] std::string text() const { return sql + direction; }
    bool operator==(const OrderKey&) const = default;
  };
  struct Shape {
    std::vector<std::string> list;   // the select list
    std::vector<std::string> group;  // GROUP BY
    std::vector<OrderKey> order;     // ORDER BY as asked for
    std::vector<OrderKey> ties;      // and what makes it total
    std::vector<std::string> once;   // columns of the one table, of which equal rows count once
    int limit = 0;
  };

  [[nodiscard]] std::string assemble(Shape shape);
  [[nodiscard]] std::vector<std::string> watches();
  [[nodiscard]] std::string top(const Shape& shape, const std::vector<OrderKey>& total,
                                const std::string& tail) const;
  [[nodiscard]] std::vector<std::string> outputs();
  [[nodiscard]] std::vector<std::string> outputsAndKeys();
  [[nodiscard]] std::vector<std::string> keys(const std::vector<int>& tables) const;
  [[nodiscard]] std::vector<OrderKey> allKeys() const;
  void append(std::vector<OrderKey>& out, const Expr& e, bool descending);
  [[nodiscard]] std::vector<OrderKey> orderBy();
  void orderRows(Shape& shape);
  [[nodiscard]] bool ofNamed(const Expr& e) const;
  [[nodiscard]] std::vector<std::string> groupKeys(const std::vector<const Expr*>& exprs);
  [[nodiscard]] std::vector<const Expr*> groups() const;
  void group(const std::vector<const Expr*>& groups, Shape& shape);
  [[nodiscard]] std::string grouped();
  [[nodiscard]] std::vector<std::string> columnsShown() const;
  [[nodiscard]] std::string distinct(bool inserted);
  [[nodiscard]] std::string distinctGroups(Shape shape, const std::vector<const Expr*>& outputs);

  const BoundSelect& s_;
  ExpressionWriter& w_;
  const Dialect& d_;
};

}  // namespace kv::jet
