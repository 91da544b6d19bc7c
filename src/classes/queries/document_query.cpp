// SPDX-License-Identifier: Apache-2.0
#include "classes/queries/document_query.h"

#include <array>
#include <optional>

#include "classes/queries/conditions.h"
#include "common/convert.h"
#include "recordset/edit.h"

namespace kv {

namespace {

// The columns of Field1 to Field6.
constexpr std::array<std::string_view, 6> kColumns = {
    "DocumentTitle", "DocumentNumber", "DocUser1", "DocUser2", "DocUser3", "DocUser4"};

// 0 controlled, 1 uncontrolled, -1 both.
int documentKind(const Variant& value) {
  if (value.isNull()) return -1;
  const auto number =
      value.isText() ? parseNumber(joinText(value)) : std::optional<double>(toDouble(value));
  return number == 0.0 ? 0 : number == 1.0 ? 1 : -1;
}

std::string inDateMarks(const Variant& value) { return "#" + joinText(value) + "#"; }

}  // namespace

void clsDocumentQuery::LoadQuery(const Ref<Recordset>& rs) {
  const bool none = rs->RecordCount() < 1;
  for (std::int32_t i = 0; i < rs->Fields().Count(); ++i) {
    const auto field = rs->Fields(i);
    criteria_.add(field->Name(), none ? Variant(Null) : field->Value());
  }
}

void clsDocumentQuery::SaveQuery(const Ref<Recordset>& rs) const {
  Edit edit(rs);
  for (std::int32_t i = 0; i < rs->Fields().Count(); ++i) {
    const auto field = rs->Fields(i);
    if (!isWritten(field->Name())) continue;
    const Variant& value = criteria_.at(field->Name());
    field->Value(equalsEmptyText(value) ? Variant(Null) : value);
  }
  edit.keep();
  rs->Update();
}

std::int32_t clsDocumentQuery::id() const {
  const Variant& value = criteria_.at("QueryID");
  return value.isNull() ? 0 : toInt32(value);
}

std::string clsDocumentQuery::JetSQL() const {
  std::string s;
  switch (documentKind(criteria_.at("DocType"))) {
    case 0: s += " and Controlled <> 0"; break;
    case 1: s += " and Controlled = False"; break;
    default: break;
  }
  addFields(s, kColumns);
  const Variant& level = criteria_.at("Rev1");
  if (applies(level))
    addComparison(s, "Documents.RevisionLevel", operatorCode(criteria_.at("Rev1Key")),
                  quotableText(level), kSqlWildcard);
  const Variant& date = criteria_.at("Rev4");
  if (applies(date)) {
    const std::string column = " and Documents.EffectiveDate ";
    switch (operatorCode(criteria_.at("Rev4Key"))) {
      case 0: s += column + "= " + inDateMarks(date); break;
      case 1: s += column + "> " + inDateMarks(date); break;
      case 2: s += column + "< " + inDateMarks(date); break;
      case 3:
        s += column + "> " + inDateMarks(date) + column + "< " + inDateMarks(criteria_.at("Rev5"));
        break;
      default: break;
    }
  }
  return joinedConditions("Where ", s);
}

std::string clsDocumentQuery::CrystalSQL() const {
  std::string s;
  switch (documentKind(criteria_.at("DocType"))) {
    case 0: s += " and {Documents.Controlled} <> 0"; break;
    case 1: s += " and {Documents.Controlled} = False"; break;
    default: break;
  }
  addFields(s, kColumns, "Documents");
  // The level that reports compare with is a criterion of its own, and its pattern keeps the
  // wildcard of the SQL text.
  if (applies(criteria_.at("Rev1")))
    addComparison(s, "{Documents.RevisionLevel}", operatorCode(criteria_.at("Rev1Key")),
                  quotableText(criteria_.at("Field7")), kSqlWildcard);
  const Variant& date = criteria_.at("Rev4");
  if (applies(date)) {
    const auto day = [&] { return "Date(" + yearMonthDay(date) + ")"; };
    switch (operatorCode(criteria_.at("Rev4Key"))) {
      case 0: s += " and {Documents.EffectiveDate} = " + day(); break;
      case 1: s += " and {Documents.EffectiveDate} > " + day(); break;
      case 3: s += " and {Documents.EffecitveDate} < " + day(); break;
      case 4:
        s += " and {Documents.EffecitveDate} > " + day() + " and {Documents.EffectiveDate} < " +
             day();
        break;
      default: break;
    }
  }
  return joinedConditions("", s);
}

}  // namespace kv
