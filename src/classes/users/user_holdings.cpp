// SPDX-License-Identifier: Apache-2.0
// What users hold, own and approve, and the changes to it seen from the user.
#include "classes/rights/document_order.h"
#include "classes/rights/rights.h"
#include "classes/session/vesk.h"
#include "classes/users/user.h"
#include "common/convert.h"
#include "common/text.h"
#include "data/operation.h"
#include "data/sql_text.h"

namespace kv {

namespace {

// What lists of holdings end with.
std::string ofUser(const std::string& table, const std::string& userId) {
  return " Where " + table + ".UserID = '" + inQuotes(userId) + "'";
}

bool hasRows(const Ref<Recordset>& rs) {
  const bool any = rs->RecordCount() > 0;
  rs->Close();
  return any;
}

}  // namespace

Ref<Recordset> clsVeskUser::HardCopies(const std::string& UserID) {
  return oVesk_->GetRecordset(
      "Select Personals.*, Manuals.ManualName,Revisions.RevisionLevel, Documents.DocumentNumber, "
      "Documents.DocumentTitle, Documents.CurrentRevID From ((Personals Left Join Manuals on "
      "Personals.ManualID = Manuals.ManualID) Left Join Documents on Personals.DocumentID = "
      "Documents.DocumentID) Left Join Revisions on Personals.RevisionID = Revisions.RevisionID" +
      ofUser("Personals", UserID) + " and HardCopy <> 0 Order By ManualName, CopyNumber, " +
      documentOrder(*oVesk_));
}

Ref<Recordset> clsVeskUser::HardCopiesForViewDoc(const std::string& UserID) {
  return oVesk_->GetRecordset(
      "Select DistinctRow Documents.* From Personals Left Join Documents on Personals.DocumentID "
      "= Documents.DocumentID" +
      ofUser("Personals", UserID) + " and HardCopy <> 0 Order By " + documentOrder(*oVesk_));
}

Ref<Recordset> clsVeskUser::HardCopiesForViewMan(const std::string& UserID) {
  return oVesk_->GetRecordset(
      "Select DistinctRow Manuals.* From (Personals Left Join Manuals on Personals.ManualID = "
      "Manuals.ManualID)" +
      ofUser("Personals", UserID) + " and HardCopy <> 0 Order By ManualName");
}

Ref<Recordset> clsVeskUser::VirtualCopies(const std::string& UserID) {
  return oVesk_->GetRecordset(
      "Select Personals.*, Manuals.ManualName, Documents.DocumentTitle, Documents.DocumentNumber, "
      "Documents.CurrentRevID From (Personals Left Join Manuals on Personals.ManualID = "
      "Manuals.ManualID) Inner Join Documents on Personals.DocumentID = Documents.DocumentID" +
      ofUser("Personals", UserID) + " and HardCopy = False Order By ManualName, CopyNumber, " +
      documentOrder(*oVesk_));
}

Ref<Recordset> clsVeskUser::VirtualCopiesForViewDoc(const std::string& UserID) {
  return oVesk_->GetRecordset(
      "Select distinctrow documents.* From Personals Inner Join Documents on "
      "Personals.DocumentID = Documents.DocumentID" +
      ofUser("Personals", UserID) + " and HardCopy = False Order By " + documentOrder(*oVesk_));
}

Ref<Recordset> clsVeskUser::VirtualCopiesForViewMan(const std::string& UserID) {
  return oVesk_->GetRecordset(
      "Select distinctrow Manuals.* From (Personals Inner Join Manuals on Personals.ManualID = "
      "Manuals.ManualID)" +
      ofUser("Personals", UserID) + " and HardCopy = False Order By ManualName");
}

Ref<Recordset> clsVeskUser::Owns(const std::string& UserID) {
  return oVesk_->GetRecordset(
      "Select Documents.DocumentTitle,Documents.DocumentNumber, Documents.DocumentID From Owners "
      "Inner Join Documents on Owners.DocumentID = Documents.DocumentID" +
      ofUser("Owners", UserID) + " Order By " + documentOrder(*oVesk_));
}

Ref<Recordset> clsVeskUser::OwnsForView(const std::string& UserID) {
  return oVesk_->GetRecordset(
      "Select Documents.* From Owners Inner Join Documents on Owners.DocumentID = "
      "Documents.DocumentID" +
      ofUser("Owners", UserID) + " Order By " + documentOrder(*oVesk_));
}

Ref<Recordset> clsVeskUser::Approves(const std::string& UserID) {
  return oVesk_->GetRecordset(
      "Select Documents.DocumentTitle, Documents.DocumentNumber, Documents.DocumentID From Routing "
      "inner join documents on Routing.DocumentID = Documents.DocumentID" +
      ofUser("Routing", UserID) + " Order By " + documentOrder(*oVesk_));
}

Ref<Recordset> clsVeskUser::ApprovesForView(const std::string& UserID) {
  return oVesk_->GetRecordset(
      "Select Documents.* From Routing inner join documents on Routing.DocumentID = "
      "Documents.DocumentID" +
      ofUser("Routing", UserID) + " Order By " + documentOrder(*oVesk_));
}

std::int32_t clsVeskUser::ReleaseDoc(const std::string& UserID, const std::string& DocumentID,
                                     bool HardCopy) {
  std::int32_t release = 0;
  oVesk_->DocumentUserRelation(DocumentID, UserID, HardCopy, false, release);
  return release;
}

std::string clsVeskUser::ReleaseMan(const std::string& UserID, const std::string& ManualID,
                                    bool HardCopy) {
  const std::string manual = inQuotes(ManualID);
  // In which nobody else is given the number.
  Operation operation(oVesk_->DataServer()->Connection());
  std::string number = oVesk_->Manual()->NextCopyNumber(manual);
  oVesk_->ManualUserRelation(manual, UserID, HardCopy, doubledQuotes(number), false);
  operation.commit();
  return number;
}

Variant clsVeskUser::SetOwner(const std::string& UserID, const std::string& DocumentID) {
  return oVesk_->OwnsRelation(DocumentID, UserID, false);
}

Variant clsVeskUser::SetApprover(const std::string& UserID, const std::string& DocumentID) {
  return oVesk_->ApprovesRelation(DocumentID, UserID, false);
}

bool clsVeskUser::ReturnDoc(const std::string& ReleaseID) {
  std::int32_t release = toInt32(leadingNumber(ReleaseID));
  return oVesk_->DocumentUserRelation("", "", true, true, release);
}

bool clsVeskUser::ReturnMan(const std::string& UserID, const std::string& ManualID, bool HardCopy,
                            const std::string& CopyNumber) {
  return oVesk_->ManualUserRelation(ManualID, UserID, HardCopy, CopyNumber, true);
}

bool clsVeskUser::UnSetOwner(const std::string& UserID, const std::string& DocumentID) {
  return oVesk_->OwnsRelation(DocumentID, UserID, true);
}

bool clsVeskUser::UnSetApprover(const std::string& UserID, const std::string& DocumentID) {
  return oVesk_->ApprovesRelation(DocumentID, UserID, true);
}

bool clsVeskUser::UserIsOwner(const std::string& id, const std::string& DocumentID) {
  const bool named =
      hasRows(oVesk_->GetRecordset("Select UserID From Owners Where DocumentID = '" +
                                   inQuotes(DocumentID) + "' and UserID = '" + inQuotes(id) + "'"));
  const bool forAll = oVesk_->UserAccess(urActAsDocumentOwner);
  const bool administrator = oVesk_->DataServer()->Profile()->Administrator() == -1;
  return named || forAll || administrator;
}

bool clsVeskUser::UserIsApprover(const std::string& id, const std::string& DocumentID) {
  return hasRows(oVesk_->GetRecordset("Select UserID From Routing Where DocumentID = '" +
                                      inQuotes(DocumentID) + "' and UserID = '" + inQuotes(id) +
                                      "'"));
}

}  // namespace kv
