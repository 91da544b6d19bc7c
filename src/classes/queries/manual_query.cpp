// SPDX-License-Identifier: Apache-2.0
#include "classes/queries/manual_query.h"

#include <array>

#include "classes/queries/conditions.h"
#include "common/convert.h"
#include "common/text.h"
#include "recordset/edit.h"

namespace kv {

namespace {

// The columns of Field1 to Field5.
constexpr std::array<std::string_view, 5> kColumns = {"ManualName", "ManUser1", "ManUser2",
                                                      "ManUser3", "ManUser4"};

}  // namespace

void clsManualQuery::LoadQuery(const Ref<Recordset>& rs) {
  criteria_.clear();
  for (std::int32_t i = 0; i < rs->Fields().Count(); ++i) {
    const auto field = rs->Fields(i);
    criteria_.add(field->Name(), field->Value());
  }
}

void clsManualQuery::SaveQuery(const Ref<Recordset>& rs) const {
  Edit edit(rs);
  for (std::int32_t i = 0; i < rs->Fields().Count(); ++i) {
    const auto field = rs->Fields(i);
    if (!isWritten(field->Name())) continue;
    const Variant& value = criteria_.at(field->Name());
    field->Value(trimmed(joinText(value)).empty() ? Variant(Null) : value);
  }
  edit.keep();
  rs->Update();
}

std::int32_t clsManualQuery::id() const { return toInt32(criteria_.at("QueryID")); }

std::string clsManualQuery::JetSQL() const {
  std::string s;
  addFields(s, kColumns);
  return joinedConditions("Where ", s);
}

std::string clsManualQuery::CrystalSQL() const {
  std::string s;
  addFields(s, kColumns, "Manuals");
  return joinedConditions("", s);
}

}  // namespace kv
