// What the three kinds of queries have in common: the criteria, and the names under which clients
// that hold one of the classes reach the members of clsQuery.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "queries/criteria_list.h"
#include "queries/query.h"

namespace kv {

class StoredQuery : public clsQuery {
 public:
  void SetQueryValue(const std::string& FieldName, const Variant& Value) override;
  [[nodiscard]] Variant GetQueryValue(const std::string& FieldName) const override;

  void clsquery_SetQueryValue(const std::string& FieldName, const Variant& Value) {
    SetQueryValue(FieldName, Value);
  }
  [[nodiscard]] Variant clsquery_GetQueryValue(const std::string& FieldName) const {
    return GetQueryValue(FieldName);
  }
  [[nodiscard]] std::string clsquery_CrystalSQL() const { return CrystalSQL(); }
  [[nodiscard]] std::string clsquery_JetSQL() const { return JetSQL(); }
  void clsquery_LoadQuery(const Ref<Recordset>& rs) { LoadQuery(rs); }
  void clsquery_SaveQuery(const Ref<Recordset>& rs) const { SaveQuery(rs); }
  [[nodiscard]] std::int32_t clsquery_ID() const { return id(); }

 protected:
  // Whether a column is written back: every one but the query's number.
  [[nodiscard]] static bool isWritten(std::string_view column) { return column != "QueryID"; }
  // Null and empty text are criteria that do not apply.
  [[nodiscard]] static bool applies(const Variant& value);

  // The conditions of Field1, Field2 and so on with their codes Field1Key, Field2Key, for columns
  // by place: for the SQL text, or, with a table, for the report formula.
  void addFields(std::string& conditions, std::span<const std::string_view> columns,
                 std::string_view formulaTable = {}) const;

  CriteriaList criteria_;
};

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
