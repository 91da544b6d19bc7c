// SPDX-License-Identifier: Apache-2.0
#include "classes/queries/stored_query.h"

#include <fmt/format.h>

#include <array>
#include <exception>

#include "classes/queries/conditions.h"
#include "common/convert.h"
#include "common/text.h"

namespace kv {

namespace {

constexpr int kCodes = 5;
// By code; the one in between is the pattern.
constexpr std::array<std::string_view, kCodes> kOperators = {" = '", " Like '", " > '", " < '",
                                                             " <> '"};

}  // namespace

void StoredQuery::SetQueryValue(const std::string& FieldName, const Variant& Value) {
  try {
    criteria_.replace(FieldName, Value);
  } catch (const std::exception&) {  // setting never raises: clients do not expect it to
  }
}

Variant StoredQuery::GetQueryValue(const std::string& FieldName) const {
  try {
    const auto* value = criteria_.find(FieldName);
    return value == nullptr ? Variant() : *value;
  } catch (const std::exception&) {
    return {};
  }
}

bool StoredQuery::applies(const Variant& value) {
  return !value.isNull() && !equalsEmptyText(value);
}

void StoredQuery::addFields(std::string& conditions, std::span<const std::string_view> columns,
                            std::string_view formulaTable) const {
  const bool formula = !formulaTable.empty();
  std::size_t number = 0;
  for (const auto column : columns) {
    const std::string key = fmt::format("Field{}", ++number);
    const Variant& value = criteria_.at(key);
    if (!applies(value)) continue;
    addComparison(conditions, formula ? formulaColumn(formulaTable, column) : std::string(column),
                  operatorCode(criteria_.at(key + "Key")), quotableText(value),
                  formula ? kFormulaWildcard : kSqlWildcard);
  }
}

int operatorCode(const Variant& value) {
  const double number = toDouble(value);
  for (int code = 0; code < kCodes; ++code)
    if (number == code) return code;
  return -1;
}

void addComparison(std::string& conditions, std::string_view column, int code,
                   std::string_view text, char wildcard) {
  if (code < 0 || code >= kCodes) return;
  conditions += " and ";
  conditions += column;
  conditions += kOperators.at(static_cast<std::size_t>(code));
  if (code == kContains) conditions += wildcard;
  conditions += text;
  if (code == kContains) conditions += wildcard;
  conditions += '\'';
}

std::string quotableText(const Variant& value) { return doubledQuotes(joinText(value)); }

std::string formulaColumn(std::string_view table, std::string_view column) {
  return fmt::format("{{{}.{}}}", table, column);
}

Date criterionDate(const Variant& value) {
  const auto* text = value.as<std::string>();
  const auto date = text == nullptr ? std::nullopt : parseDateLiteral(*text);
  return date ? *date : toDate(value);
}

std::string yearMonthDay(const Variant& date) {
  const CalendarTime fields = criterionDate(date).fields();
  return fmt::format("{},{},{}", fields.year, fields.month, fields.day);
}

std::string joinedConditions(std::string_view keyword, const std::string& conditions) {
  constexpr std::size_t kAnd = 5;  // " and "
  return conditions.empty() ? std::string() : std::string(keyword) + conditions.substr(kAnd);
}

}  // namespace kv
