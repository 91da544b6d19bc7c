// SPDX-License-Identifier: Apache-2.0
// The record operations of clsVeskDocument.
#include "classes/documents/document.h"
#include "classes/documents/document_errors.h"
#include "classes/session/vesk.h"
#include "common/clock.h"
#include "common/convert.h"
#include "common/text.h"
#include "data/operation.h"
#include "data/sql_text.h"
#include "recordset/text_field.h"

namespace kv {

namespace {

constexpr const char* kUncontrolled = "Uncontrolled";

}  // namespace

Ref<Recordset> clsVeskDocument::Records(std::int32_t filterid, const std::string& SortFields,
                                        const std::string& cSQL, const std::string& Fields) {
  std::string sql = cSQL;
  return Records(filterid, SortFields, sql, Fields);
}

Ref<Recordset> clsVeskDocument::Records(std::int32_t filterid, const std::string& SortFields,
                                        std::string& cSQL, const std::string& Fields) {
  if (!trimmed(cSQL).empty()) return dataServer_->open(cSQL);
  if (filterid == 0) return {};
  std::string condition = GetQuery(filterid)->JetSQL();
  if (oVesk_->DataServer()->Profile()->Administrator() != -1)
    condition += trimmed(condition).empty() ? " Where SecurityLevel = 0" : " and SecurityLevel = 0";
  cSQL = condition;
  return dataServer_->open("Select " + (Fields.empty() ? "*" : Fields) + " from Documents " + cSQL +
                           " Order By " + (SortFields.empty() ? "DocumentTitle" : SortFields));
}

Ref<Recordset> clsVeskDocument::Record(const std::string& id) {
  return dataServer_->open("Select * From Documents Where DocumentID = '" + inQuotes(id) + "'");
}

Ref<Recordset> clsVeskDocument::find(const std::string& docid, const Ref<Recordset>& rs,
                                     const NotFoundErrors& errors) {
  const std::string criterion = "DocumentID = '" + inQuotes(docid) + "'";
  if (rs) {
    findRow(*rs, criterion, errors);
    return rs;
  }
  auto own = Records(0, {}, "Select * From Documents Where " + criterion);
  onlyRow(*own, errors);
  return own;
}

void clsVeskDocument::LoadData(const std::string& docid, std::string& title, std::string& number,
                               std::string& RevisionLevel, std::string& EffectiveDate,
                               std::string& user1, std::string& user2, std::string& user3,
                               std::string& user4, std::string& Notes, bool& securitylevel,
                               std::string& location, bool& Controlled, std::int32_t& currentRevID,
                               const Ref<Recordset>& rs) {
  const auto row = find(docid, rs, kLoadDocumentErrors);
  title = fieldText(*row, "DocumentTitle");
  number = fieldText(*row, "DocumentNumber");
  RevisionLevel = fieldText(*row, "RevisionLevel");
  EffectiveDate = fieldText(*row, "EffectiveDate");
  user1 = fieldText(*row, "DocUser1");
  user2 = fieldText(*row, "DocUser2");
  user3 = fieldText(*row, "DocUser3");
  user4 = fieldText(*row, "DocUser4");
  Notes = fieldText(*row, "DocumentNotes");
  securitylevel = toBoolean(row->Fields("SecurityLevel")->Value());
  location = fieldText(*row, "Location");
  Controlled = toBoolean(row->Fields("Controlled")->Value());
  const Variant current = row->Fields("CurrentRevID")->Value();
  if (!current.isNull()) currentRevID = toInt32(current);
  if (!rs) row->Close();
}

std::string clsVeskDocument::Add(const std::string& UserID, const std::string& title,
                                 const std::string& number, const std::string& user1,
                                 const std::string& user2, const std::string& user3,
                                 const std::string& user4, const std::string& Notes, std::int16_t,
                                 const std::string& location, const std::string& RevisionLevel,
                                 const std::string& EffectiveDate, bool RevReady, bool Controlled,
                                 bool Secured, const Ref<Recordset>& rs) {
  savePending(rs);
  Operation operation(dataServer_->Connection());
  const auto row = rs ? rs : Records(0, {}, "Select * From Documents Where ID = -1");
  Addition addition(row);
  std::string documentId = outOfQuotes(UserID) + stampText(now());
  setFieldOrNull(*row, "DocumentID", documentId);
  setFieldOrNull(*row, "DocumentTitle", title);
  setFieldOrNull(*row, "DocumentNumber", number);
  setFieldOrNull(*row, "DocUser1", user1);
  setFieldOrNull(*row, "DocUser2", user2);
  setFieldOrNull(*row, "DocUser3", user3);
  setFieldOrNull(*row, "DocUser4", user4);
  setFieldOrNull(*row, "DocumentNotes", Notes);
  row->Fields("SecurityLevel")->Value(Secured);
  setFieldOrNull(*row, "Location", location);
  // Before the document's row is stored: should this fail, there is nothing to take back.
  const std::int32_t revision =
      oVesk_->Revision()->Add(doubledQuotes(documentId), RevisionLevel, {}, {}, {}, location,
                              RevReady, UserID, EffectiveDate);
  if (RevReady) {
    row->Fields("CurrentRevID")->Value(revision);
    setFieldOrNull(*row, "RevisionLevel", RevisionLevel);
    setFieldOrNull(*row, "EffectiveDate", EffectiveDate);
  }
  row->Fields("Controlled")->Value(Controlled);
  if (!Controlled) {
    row->Fields("CurrentRevID")->Value(0);
    row->Fields("RevisionLevel")->Value(kUncontrolled);
    row->Fields("EffectiveDate")->Value(Null);
  }
  row->Update();
  operation.commit();
  addition.keep();
  if (!rs) row->Close();
  return documentId;
}

std::int16_t clsVeskDocument::SaveData(const std::string& id, const std::string& title,
                                       const std::string& number, const std::string& user1,
                                       const std::string& user2, const std::string& user3,
                                       const std::string& user4, const std::string& Notes,
                                       bool Secured, bool Controlled, const std::string& location,
                                       const Ref<Recordset>& rs) {
  savePending(rs);
  Operation operation(dataServer_->Connection(), "Documents", "DocumentID", outOfQuotes(id));
  const auto row = find(id, rs, kSaveDocumentErrors);
  Edit edit(row);
  setFieldOrNull(*row, "DocumentTitle", title);
  setFieldOrNull(*row, "DocumentNumber", number);
  setFieldOrNull(*row, "DocUser1", user1);
  setFieldOrNull(*row, "DocUser2", user2);
  setFieldOrNull(*row, "DocUser3", user3);
  setFieldOrNull(*row, "DocUser4", user4);
  setFieldOrNull(*row, "DocumentNotes", Notes);
  row->Fields("SecurityLevel")->Value(Secured);
  row->Fields("Controlled")->Value(Controlled);
  setFieldOrNull(*row, "Location", location);
  edit.keep();
  row->Update();
  operation.commit();
  if (!rs) row->Close();
  return 0;
}

Variant clsVeskDocument::valueIn(const std::string& sql, const std::string& column) {
  return firstValue(*Records(0, {}, sql), column);
}

Variant clsVeskDocument::Value(const std::string& docid, const std::string& FieldName) {
  return valueIn("Select * From Documents Where DocumentID = '" + inQuotes(docid) + "'", FieldName);
}

Variant clsVeskDocument::IDValue(std::int32_t id, const std::string& FieldName) {
  return valueIn("Select * From Documents Where ID = " + std::to_string(id), FieldName);
}

void clsVeskDocument::SetValue(const std::string& docid, const std::string& FieldName,
                               const Variant& Value) {
  Operation operation(dataServer_->Connection(), "Documents", "DocumentID", outOfQuotes(docid));
  const auto row =
      dataServer_->open("Select * From Documents Where DocumentID = '" + inQuotes(docid) + "'");
  if (row->RecordCount() > 0) {
    row->Fields(FieldName)->Value(Value);
    row->Update();
  }
  row->Close();
  operation.commit();
}

bool clsVeskDocument::HasCurrentRevision(const std::string& DocumentID) {
  const auto row = Record(DocumentID);
  if (row->RecordCount() <= 0) return false;
  const Variant current = row->Fields("CurrentRevID")->Value();
  return !current.isNull() && toInt32(current) > 0;
}

void clsVeskDocument::MakeUnControlled(const std::string& docid) {
  const std::string id = inQuotes(docid);
  Operation operation(dataServer_->Connection(), "Documents", "DocumentID", outOfQuotes(docid));
  dataServer_->execute("Delete * From ManualContents Where DocumentID = '" + id + "'");
  dataServer_->execute("Delete * From Personals Where DocumentID = '" + id + "' And HardCopy <> 0");
  dataServer_->execute("Delete * From Routing Where DocumentID = '" + id + "'");
  dataServer_->execute("Delete * From Revisions Where DocumentID = '" + id +
                       "' and RevisionStatus <> 1");
  operation.commit();
}

void clsVeskDocument::Delete(const std::string& id, bool DeleteFromDocTable) {
  const std::string of = " Where DocumentID = '" + inQuotes(id) + "'";
  Operation operation(dataServer_->Connection(), "Documents", "DocumentID", outOfQuotes(id));
  const auto step = [&](const std::string& sql) {
    operation.keep([&] { dataServer_->execute(sql); });
  };
  step("DELETE * From ManualContents" + of);
  step("Delete * from Revisions" + of);
  step("Delete * from Owners" + of);
  step("Delete * from Routing WHere DocumentID = '" + id + "'");
  step("Delete * from Personals" + of);
  if (DeleteFromDocTable) step("Delete * from Documents" + of);
  operation.commit();
}

}  // namespace kv
