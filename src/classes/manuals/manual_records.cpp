// SPDX-License-Identifier: Apache-2.0
// The record operations of clsVeskManual.
#include "classes/manuals/manual.h"
#include "classes/manuals/manual_errors.h"
#include "classes/rights/document_order.h"
#include "classes/session/vesk.h"
#include "common/clock.h"
#include "common/text.h"
#include "data/operation.h"
#include "data/sql_text.h"
#include "recordset/text_field.h"

namespace kv {

namespace {

constexpr std::int32_t kEveryManual = -1;

std::string recordOf(const std::string& manualId) {
  return "Select * From Manuals Where ManualID = '" + inQuotes(manualId) + "'";
}

void writeFields(const Recordset& row, const std::string& name, const std::string& user1,
                 const std::string& user2, const std::string& user3, const std::string& user4,
                 const std::string& notes) {
  setFieldOrNull(row, "ManualName", name);
  setFieldOrNull(row, "ManUser1", user1);
  setFieldOrNull(row, "ManUser2", user2);
  setFieldOrNull(row, "ManUser3", user3);
  setFieldOrNull(row, "ManUser4", user4);
  setFieldOrNull(row, "ManUserMemo", notes);
}

}  // namespace

Ref<Recordset> clsVeskManual::Records(std::int32_t filterid, const std::string& SortFields,
                                      const std::string& cSQL, const std::string& Fields) {
  std::string sql = cSQL;
  return Records(filterid, SortFields, sql, Fields);
}

Ref<Recordset> clsVeskManual::Records(std::int32_t filterid, const std::string& SortFields,
                                      std::string& cSQL, const std::string& Fields) {
  if (!trimmed(cSQL).empty()) return dataServer_->open(cSQL);
  const std::string select = "Select " + (Fields.empty() ? "*" : Fields) + " from Manuals ";
  const std::string order = "Order By " + (SortFields.empty() ? "ManualName" : SortFields);
  if (filterid == kEveryManual) return dataServer_->open(select + order);
  cSQL = GetQuery(filterid)->JetSQL();
  return dataServer_->open(select + cSQL + " " + order);
}

Ref<Recordset> clsVeskManual::RecordsWithContents(std::int32_t filterid,
                                                  const std::string& SortFields,
                                                  const std::string& cSQL,
                                                  const std::string& Fields) {
  std::string sql = cSQL;
  return RecordsWithContents(filterid, SortFields, sql, Fields);
}

Ref<Recordset> clsVeskManual::RecordsWithContents(std::int32_t filterid,
                                                  const std::string& SortFields, std::string& cSQL,
                                                  const std::string& Fields) {
  const std::string ofDocuments = documentOrder(*oVesk_);
  if (!trimmed(cSQL).empty()) return dataServer_->open(cSQL);
  cSQL = GetQuery(filterid)->JetSQL();
  return dataServer_->open(
      "Select " + (Fields.empty() ? "Manuals.* , Documents.*" : Fields) +
      " from (Manuals Inner Join ManualContents on Manuals.ManualID = ManualContents.ManualID) "
      "Inner Join Documents on ManualContents.DocumentID = Documents.DocumentID " +
      cSQL + " Order By " +
      (SortFields.empty() ? "ManualName, Position, " + ofDocuments : SortFields));
}

Ref<Recordset> clsVeskManual::Record(const std::string& ManualID) {
  return dataServer_->open(recordOf(ManualID));
}

Ref<Recordset> clsVeskManual::find(const std::string& ManualID, const Ref<Recordset>& rs,
                                   const NotFoundErrors& errors) {
  if (rs) {
    findRow(*rs, "ManualID = '" + inQuotes(ManualID) + "'", errors);
    return rs;
  }
  auto own = Records(0, {}, recordOf(ManualID));
  onlyRow(*own, errors);
  return own;
}

void clsVeskManual::LoadData(const std::string& ManualID, std::string& ManualName,
                             std::string& user1, std::string& user2, std::string& user3,
                             std::string& user4, std::string& Notes, const Ref<Recordset>& rs) {
  const auto row = find(ManualID, rs, kLoadManualErrors);
  ManualName = fieldText(*row, "ManualName");
  user1 = fieldText(*row, "ManUser1");
  user2 = fieldText(*row, "ManUser2");
  user3 = fieldText(*row, "ManUser3");
  user4 = fieldText(*row, "ManUser4");
  Notes = fieldText(*row, "ManUserMemo");
  if (!rs) row->Close();
}

void clsVeskManual::SaveData(const std::string& ManualID, const std::string& ManualName,
                             const std::string& user1, const std::string& user2,
                             const std::string& user3, const std::string& user4,
                             const std::string& Notes, const Ref<Recordset>& rs) {
  savePending(rs);
  Operation operation(dataServer_->Connection(), "Manuals", "ManualID", outOfQuotes(ManualID));
  const auto row = find(ManualID, rs, kSaveManualErrors);
  Edit edit(row);
  writeFields(*row, ManualName, user1, user2, user3, user4, Notes);
  edit.keep();
  row->Update();
  operation.commit();
  if (!rs) row->Close();
}

std::string clsVeskManual::Add(const std::string& ManualName, const std::string& user1,
                               const std::string& user2, const std::string& user3,
                               const std::string& user4, const std::string& Notes,
                               const Ref<Recordset>& rs) {
  savePending(rs);
  Operation operation(dataServer_->Connection());
  const auto row = rs ? rs : dataServer_->open("Select * From Manuals Where ID = -1");
  Addition addition(row);
  std::string manualId = dataServer_->Profile()->UserID() + stampText(now());
  setFieldOrNull(*row, "ManualID", manualId);
  writeFields(*row, ManualName, user1, user2, user3, user4, Notes);
  row->Update();
  operation.commit();
  addition.keep();
  if (!rs) row->Close();
  return manualId;
}

Variant clsVeskManual::Value(const std::string& ManualID, const std::string& FieldName) {
  return firstValue(*dataServer_->open(recordOf(ManualID)), FieldName);
}

Variant clsVeskManual::IDValue(std::int32_t id, const std::string& FieldName) {
  return firstValue(*dataServer_->open("Select * From Manuals Where ID = " + std::to_string(id)),
                    FieldName);
}

Variant clsVeskManual::SetValue(const std::string& ManualID, const std::string& FieldName,
                                const Variant& Value) {
  const auto row = dataServer_->open(recordOf(ManualID));
  if (row->RecordCount() > 0) row->Fields(FieldName)->Value(Value);
  row->Close();  // which an edit does not let pass
  return {};
}

bool clsVeskManual::HasContents(const std::string& ManualID) {
  return dataServer_
             ->open("Select * From ManualContents Where ManualID = '" + inQuotes(ManualID) + "'")
             ->RecordCount() > 0;
}

void clsVeskManual::Delete(const std::string& id, const Ref<Recordset>& rs) {
  const std::string is = "ManualID = '" + inQuotes(id) + "'";
  savePending(rs);
  Operation operation(dataServer_->Connection(), "Manuals", "ManualID", outOfQuotes(id));
  operation.keep([&] {
    if (!rs || rs->RecordCount() <= 0) {
      dataServer_->execute("Delete * From Manuals Where " + is);
      return;
    }
    rs->MoveFirst();
    rs->Find(is);
    if (!rs->Eof()) rs->Delete();
  });
  operation.keep([&] { dataServer_->execute("Delete * from ManualContents Where " + is); });
  operation.keep([&] { dataServer_->execute("Delete * from Personals Where " + is); });
  operation.commit();
}

}  // namespace kv
