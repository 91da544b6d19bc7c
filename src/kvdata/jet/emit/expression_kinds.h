// Questions that the emitters ask of a bound expression.
#pragma once

#include "kvdata/jet/ast.h"

namespace kv::jet {

[[nodiscard]] bool isText(const Expr& e);
[[nodiscard]] bool isDate(const Expr& e);
[[nodiscard]] bool isNumber(const Expr& e);
// Kinds whose SQL form is a condition, not a value.
[[nodiscard]] bool isCondition(const Expr& e);
// Whether it has the same value in every row.
[[nodiscard]] bool isConstant(const Expr& e);

}  // namespace kv::jet
