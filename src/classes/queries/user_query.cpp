// SPDX-License-Identifier: Apache-2.0
#include "classes/queries/user_query.h"

#include <fmt/format.h>

#include <array>

#include "classes/queries/conditions.h"
#include "common/convert.h"
#include "common/text.h"
#include "data/sql_text.h"

namespace kv {

namespace {

constexpr std::array<const char*, 15> kFields = {
    "UserName", "Alias",  "Title",  "User00", "User01", "User02", "User03", "User04",
    "User05",   "User06", "User07", "User08", "User09", "User10", "User11"};

constexpr int kNumberType = 1;
constexpr int kDateType = 2;

// Codes by which numbers and dates are compared; text reads the same codes its own way.
constexpr int kEqual = 0;
constexpr int kAbove = 1;
constexpr int kBelow = 2;
constexpr int kBetween = 3;
constexpr int kNotEqual = 4;

bool isBlank(const Variant& value) { return trimmed(joinText(value)).empty(); }

}  // namespace

void clsUserQuery::LoadQuery(const Ref<Recordset>& rs) {
  for (std::int32_t i = 0; i < rs->Fields().Count(); ++i) {
    const auto field = rs->Fields(i);
    criteria_.add(field->Name(), field->Value());
  }
}

void clsUserQuery::LoadFieldTypes(const Ref<Recordset>& rs) {
  for (std::int32_t i = 0; i < rs->Fields().Count(); ++i) {
    const auto field = rs->Fields(i);
    fieldTypes_.add(field->Name(), field->Value());
  }
  for (const char* fixed : {"TypeUserName", "TypeAlias", "TypeTitle"})
    fieldTypes_.add(fixed, std::int16_t{0});
}

void clsUserQuery::SaveQuery(const Ref<Recordset>& rs) const {
  for (std::int32_t i = 0; i < rs->Fields().Count(); ++i) {
    const auto field = rs->Fields(i);
    if (!isWritten(field->Name())) continue;
    const Variant& value = criteria_.at(field->Name());
    const Variant present = field->Value();
    const bool changed =
        value.isNull() != present.isNull() || compareValues(value, present).value_or(0) != 0;
    if (!changed) continue;
    field->Value(isBlank(value) ? Variant(Null) : value);
    rs->Update();
  }
}

std::int32_t clsUserQuery::id() const { return toInt32(criteria_.at("QueryID")); }

clsUserQuery::FieldType clsUserQuery::typeOf(const std::string& field) const {
  const Variant& type = fieldTypes_.at("Type" + field);
  const auto code = parseNumber(joinText(type));
  if (code == kNumberType) return FieldType::Number;
  return code == kDateType ? FieldType::Date : FieldType::Text;
}

void clsUserQuery::requireJoinable() const {
  for (const char* name : kFields) {
    const std::string field = name;
    const Variant& value = criteria_.at(field);
    if (!applies(value)) continue;
    const int code = operatorCode(criteria_.at(field + "Operator"));
    if (code < 0) continue;
    const auto require = [&](const std::string& text) {
      const FieldType type = code == kNotEqual ? FieldType::Text : typeOf(field);
      if (type == FieldType::Text) {
        (void)inQuotes(text);
      } else if (type == FieldType::Number) {
        (void)asNumber(text);
      } else {
        (void)asDate(text);
      }
    };
    require(joinText(value));
    if (code == kBetween && typeOf(field) != FieldType::Text)
      require(joinText(criteria_.at(field + "Upper")));
  }
}

std::string clsUserQuery::JetSQL() const {
  std::string s;
  for (const char* name : kFields) {
    const std::string field = name;
    const Variant& value = criteria_.at(field);
    if (!applies(value)) continue;
    const int code = operatorCode(criteria_.at(field + "Operator"));
    if (code < 0) continue;
    const std::string v = joinText(value);
    const FieldType type = code == kNotEqual ? FieldType::Text : typeOf(field);
    if (type == FieldType::Text) {
      addComparison(s, field, code, v, kSqlWildcard);
      continue;
    }
    const bool date = type == FieldType::Date;
    const std::string mark = date ? "#" : "";
    const auto upper = [&] { return joinText(criteria_.at(field + "Upper")); };
    switch (code) {
      case kEqual: s += " and " + field + " = " + mark + v + mark; break;
      case kAbove: s += " and " + field + " > " + mark + v + mark; break;
      case kBelow: s += " and " + field + " < " + mark + v + mark; break;
      case kBetween:
        // The end of a range of numbers names its column as the report formula does.
        s += " and " + field + " > " + mark + v + mark + " and " +
             (date ? field : formulaColumn("Users", field)) + " < " + mark + upper() + mark;
        break;
      default: break;
    }
  }
  return joinedConditions(" Where ", s);
}

std::string clsUserQuery::CrystalSQL() const {
  std::string s;
  for (const char* name : kFields) {
    const std::string field = name;
    const Variant& value = criteria_.at(field);
    if (!applies(value)) continue;
    const int code = operatorCode(criteria_.at(field + "Operator"));
    if (code < 0) continue;
    const std::string column = formulaColumn("Users", field);
    const FieldType type = code == kNotEqual ? FieldType::Text : typeOf(field);
    if (type == FieldType::Text) {
      addComparison(s, column, code, joinText(value), kFormulaWildcard);
      continue;
    }
    const bool date = type == FieldType::Date;
    const std::string v = date ? "Date(" + yearMonthDay(value) + ")" : joinText(value);
    const auto upper = [&]() -> std::string {
      const Variant& end = criteria_.at(field + "Upper");
      if (!date) return joinText(end);
      // Year and month are those of the beginning.
      const CalendarTime from = criterionDate(value).fields();
      return fmt::format("Date({},{},{})", from.year, from.month, criterionDate(end).fields().day);
    };
    switch (code) {
      case kEqual: s += " and " + column + " = " + v; break;
      case kAbove: s += " and " + column + " > " + v; break;
      case kBelow: s += " and " + column + " < " + v; break;
      case kBetween: s += " and " + column + " > " + v + " and " + column + " < " + upper(); break;
      default: break;
    }
  }
  return joinedConditions("", s);
}

}  // namespace kv
