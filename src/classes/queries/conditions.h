// SPDX-License-Identifier: Apache-2.0
// Pieces of the conditions that queries are turned into.
#pragma once

#include <string>
#include <string_view>

#include "common/date.h"
#include "common/variant.h"

namespace kv {

// The number that a criterion stands for in a list of codes from 0 to 4; -1 when it is in none.
// Raises 94 for Null and 13 for text that is no number.
[[nodiscard]] int operatorCode(const Variant& value);

// Adds " and " + column + operator + the text in apostrophes, with `wildcard` around it in
// patterns. Adds nothing for a code that is no operator.
void addComparison(std::string& conditions, std::string_view column, int code,
                   std::string_view text, char wildcard);

// A value as text that can stand between apostrophes.
[[nodiscard]] std::string quotableText(const Variant& value);

inline constexpr char kSqlWildcard = '%';
inline constexpr char kFormulaWildcard = '*';
inline constexpr int kContains = 1;  // the one code that is a pattern

// A column as the report formula names it.
[[nodiscard]] std::string formulaColumn(std::string_view table, std::string_view column);
// The day that a criterion says: text is read as a statement reads it between number signs, so that
// formula and statement of one query mean the same. Raises 13 for something that is no date.
[[nodiscard]] Date criterionDate(const Variant& value);
// Year, month and day without leading zeros, joined by commas. Raises 13 for something that is no
// date.
[[nodiscard]] std::string yearMonthDay(const Variant& date);

// The conditions behind `keyword`, without the " and " that the first of them begins with; empty
// when there are none.
[[nodiscard]] std::string joinedConditions(std::string_view keyword, const std::string& conditions);

}  // namespace kv
