// SPDX-License-Identifier: Apache-2.0
// Writes the expressions and the FROM clause of one SQL text and gathers its parameters.
#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "jet/binding/bound.h"
#include "jet/emit/dialect.h"
#include "jet/emit/emitted.h"

namespace kv::jet {

class ExpressionWriter {
 public:
  // With `lifted` literals become parameters, numbered from `firstParam`; without, they are written
  // into the text. What is handed in must outlive the writer.
  ExpressionWriter(const std::vector<ScopeTable>& scope, const std::vector<Literal>& literals,
                   bool lifted, const Dialect& dialect, int firstParam = 1)
      : scope_(scope), literals_(literals), lifted_(lifted), d_(dialect), firstParam_(firstParam) {}

  // The text with the parameters gathered so far.
  [[nodiscard]] SqlText finish(std::string text) {
    return {std::move(text), std::move(params_), firstParam_};
  }
  [[nodiscard]] const Dialect& dialect() const noexcept { return d_; }

  // While it lives, an expression equal to one of `groups` stands for its group: texts of a group
  // may be spelled in several ways, so one spelling is taken. Without groups rows are themselves.
  class Groups {
   public:
    explicit Groups(ExpressionWriter& writer, std::vector<const Expr*> groups = {})
        : writer_(writer), before_(std::exchange(writer.groups_, std::move(groups))) {}
    ~Groups() { writer_.groups_ = std::move(before_); }
    Groups(const Groups&) = delete;
    Groups& operator=(const Groups&) = delete;
    Groups(Groups&&) = delete;
    Groups& operator=(Groups&&) = delete;

   private:
    ExpressionWriter& writer_;
    std::vector<const Expr*> before_;
  };

  [[nodiscard]] std::string value(const Expr& e);
  [[nodiscard]] std::string condition(const Expr& e);
  // The keys by which texts compare.
  [[nodiscard]] std::string fold(const Expr& e);
  [[nodiscard]] std::vector<std::string> order(const Expr& e);
  // The key that names a row of a table of the scope.
  [[nodiscard]] std::string key(int table) const;
  // The value in the form in which a column stores it.
  [[nodiscard]] std::string assigned(const TableInfo& table, const ColumnInfo& given,
                                     const Expr& e);
  [[nodiscard]] std::string from(const TableRef& ref);
  // A parameter for this use; the same use twice is one parameter.
  [[nodiscard]] std::string param(ParamUse use);

 private:
  [[nodiscard]] ValueKind kindOf(const ParamUse& use) const;
  std::string literal(const ParamUse& use);
  [[nodiscard]] std::string column(int table, int column) const;
  [[nodiscard]] const Expr* groupOf(const Expr& e) const;
  std::pair<std::string, std::string> values(const Expr& e);
  std::string operand(const Expr& e);
  std::string aggregate(const Expr& e);
  std::pair<std::string, std::string> sides(Op op, const Expr& a, const Expr& b);
  std::string compare(Op op, const Expr& a, const Expr& b);
  std::string balanced(const std::vector<ExprPtr>& args, std::size_t from, std::size_t to,
                       std::string_view word);
  std::string in(const Expr& x, const Expr& e, bool chain);
  std::string like(const Expr& e);
  std::string between(const Expr& e);
  std::string join(const TableRef& ref, std::string_view word);

  const std::vector<ScopeTable>& scope_;
  const std::vector<Literal>& literals_;
  bool lifted_;
  const Dialect& d_;
  int firstParam_;
  std::vector<ParamUse> params_;
  std::vector<const Expr*> groups_;
};

}  // namespace kv::jet
