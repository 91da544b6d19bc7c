// SPDX-License-Identifier: Apache-2.0
#include "jet/emit/expression_kinds.h"

#include <algorithm>

#include "common/catalog.h"

namespace kv::jet {

bool isText(const Expr& e) { return e.type && isTextType(*e.type); }
bool isDate(const Expr& e) { return e.type == ColumnType::Date; }
bool isNumber(const Expr& e) { return e.type && !isTextType(*e.type) && !isDate(e); }

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

bool isCalculated(const Expr& e) {
  return e.kind == ExprKind::Negate || e.kind == ExprKind::Function ||
         (e.kind == ExprKind::Binary && !isComparison(e.op));
}

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

}  // namespace kv::jet
