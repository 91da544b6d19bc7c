// SPDX-License-Identifier: Apache-2.0
// Questions that the emitters ask of a bound expression.
#pragma once

#include "common/catalog.h"
#include "jet/syntax/ast.h"

namespace kv::jet {

[[nodiscard]] bool isText(const Expr& e);
[[nodiscard]] bool isDate(const Expr& e);
[[nodiscard]] bool isNumber(const Expr& e);
// Kinds whose SQL form is a condition, not a value.
[[nodiscard]] bool isCondition(const Expr& e);
// What can leave the type of what it is calculated from.
[[nodiscard]] bool isCalculated(const Expr& e);
// Whether a column of type `to` takes it without a conversion, which would refuse what the column
// cannot hold.
[[nodiscard]] bool isTakenAsItIs(const Expr& e, ColumnType to);
// Whether it has the same value in every row.
[[nodiscard]] bool isConstant(const Expr& e);

}  // namespace kv::jet
