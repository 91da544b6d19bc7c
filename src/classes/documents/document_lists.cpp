// SPDX-License-Identifier: Apache-2.0
// What hangs off a document, what users hold, and the order of a document's approvers.
#include "classes/documents/document.h"
#include "classes/rights/document_order.h"
#include "classes/session/vesk.h"
#include "common/convert.h"
#include "data/operation.h"
#include "data/sql_text.h"

namespace kv {

Ref<Recordset> clsVeskDocument::usersOf(const std::string& statement) {
  return oVesk_->MainUser()->UserRecords(dataServer_->open(statement));
}

Ref<Recordset> clsVeskDocument::Copies(const std::string& docid, bool AllFields) {
  const std::string which =
      " Where Personals.HardCopy <> 0 and Personals.DocumentID = '" + inQuotes(docid) + "'";
  if (AllFields) return usersOf("Select Personals.UserID From Personals" + which);
  return dataServer_->open(
      "Select Personals.*, Manuals.*, Revisions.* from (Personals Left Join Manuals On "
      "Personals.ManualID = Manuals.ManualID) Left Join Revisions On Personals.RevisionID = "
      "Revisions.RevisionID" +
      which);
}

Ref<Recordset> clsVeskDocument::Manuals(const std::string& docid, bool AllFields) {
  const std::string which = " Where ManualContents.DocumentID = '" + inQuotes(docid) + "'";
  if (AllFields)
    return dataServer_->open(
        "Select Manuals.* from Manuals Inner Join ManualContents On Manuals.ManualID = "
        "ManualContents.ManualID" +
        which);
  return dataServer_->open(
      "Select Manuals.ManualID, Manuals.ManualName from ManualContents Inner Join Manuals On "
      "ManualContents.ManualID = Manuals.ManualID" +
      which);
}

Ref<Recordset> clsVeskDocument::Owners(const std::string& docid, bool AllFields, bool) {
  const std::string document = inQuotes(docid);
  if (AllFields)
    return usersOf("Select Owners.UserID from Owners Where Owners.DocumentID = '" + document + "'");
  return dataServer_->open("Select UserID from Owners Where Owners.DocumentID = '" + document +
                           "'");
}

Ref<Recordset> clsVeskDocument::Approvers(const std::string& docid, bool AllFields) {
  const std::string inOrder = " from Routing Where Routing.DocumentID = '" + inQuotes(docid) +
                              "' Order By Routing.ListOrder";
  if (AllFields) return usersOf("Select UserID" + inOrder);
  return dataServer_->open("Select Routing.*" + inOrder);
}

Ref<Recordset> clsVeskDocument::Users(const std::string& docid, bool AllFields) {
  const std::string document = inQuotes(docid);
  if (AllFields)
    return usersOf(
        "Select Personals.UserID FROM Personals Where Personals.HardCopy = False and "
        "Personals.DocumentID = '" +
        document + "'");
  return dataServer_->open(
      "Select Personals.ManualID, Personals.UserID, VeskProfiles.UserName, Personals.ReleaseID "
      "FROM ((Personals LEFT JOIN Documents ON Personals.DocumentID = Documents.DocumentID) LEFT "
      "JOIN Manuals ON Personals.ManualID = Manuals.ManualID) LEFT JOIN VeskProfiles ON "
      "Personals.UserID = VeskProfiles.UserID Where Personals.HardCopy = 0 and "
      "Personals.DocumentID = '" +
      document + "'");
}

Ref<Recordset> clsVeskDocument::DocRevisions(const std::string& docid) {
  return dataServer_->open("Select * From Revisions Where documentID = '" + inQuotes(docid) +
                           "' Order By EffectiveDate");
}

Ref<Recordset> clsVeskDocument::PersonalDocuments(const std::string& id) {
  return dataServer_->open(
      "SELECT Documents.DocumentID, Documents.DocumentTitle, Personals.ManualID, "
      "Personals.CopyNumber, Personals.ReleaseID, Personals.HardCopy FROM Personals INNER JOIN "
      "Documents ON Personals.DocumentID = Documents.DocumentID WHERE (((Personals.UserID)='" +
      inQuotes(id) + "')) Order by Personals.ManualID, Documents." + documentOrder(*oVesk_));
}

Ref<Recordset> clsVeskDocument::Personals(const std::string& id, bool VirtualCopies,
                                          bool HardCopies) {
  const char* kind = "";
  if (!HardCopies)
    kind = " and HardCopy = 0";
  else if (!VirtualCopies)
    kind = " and HardCopy <> 0";
  const bool both = VirtualCopies && HardCopies;
  return dataServer_->open(
      std::string("SELECT Revisions.RevisionLevel, Personals.RevisionID, Documents.CurrentRevID, "
                  "Documents.DocumentID,Documents.DocumentNumber, Documents.DocumentTitle, "
                  "Manuals.ManualID, Manuals.ManualName, Personals.UserID,Personals.ReleaseID, "
                  "Personals.HardCopy") +
      (both ? "" : " ") +
      ", Personals.CopyNumber FROM ((Personals Left JOIN Revisions On Personals.RevisionID = "
      "Revisions.RevisionID) Left JOIN Manuals ON Personals.ManualID = Manuals.ManualID) INNER "
      "JOIN Documents ON Personals.DocumentID = Documents.DocumentID WHERE "
      "(((Personals.UserID)='" +
      inQuotes(id) + "')" + kind + ") ORDER BY ManualName, CopyNumber, " + documentOrder(*oVesk_));
}

namespace {

// Places are kept apart at least this far, and spread over 1 to 100 when they come closer.
constexpr double kCloseTogether = 0.00001;
constexpr double kRange = 100;

float placeOf(const Recordset& approvers) {
  const Variant place = approvers.Fields("ListOrder")->Value();
  return place.isNull() ? 0 : static_cast<float>(toDouble(place));
}

}  // namespace

bool clsVeskDocument::ChangeListOrder(const std::string& docid, const std::string& OldPosition,
                                      const std::string& NewPosition) {
  const std::string moved = "UserID = '" + inQuotes(OldPosition) + "'";
  const std::string behind = "UserID = '" + inQuotes(NewPosition) + "'";
  const std::string document = inQuotes(docid);
  Operation operation(dataServer_->Connection(), "Documents", "DocumentID", outOfQuotes(document));
  auto approvers = Approvers(document);
  approvers->Find(behind);
  const float next = placeOf(*approvers);
  approvers->MovePrevious();
  const float previous = approvers->Bof() ? 0 : placeOf(*approvers);
  const float place = (previous + next) / 2;
  approvers->MoveFirst();
  approvers->Find(moved);
  approvers->Fields("ListOrder")->Value(place);
  approvers->Update();
  if (next - place < kCloseTogether) {
    approvers->Close();
    approvers = Approvers(document);
    // Of more than 199 approvers all come to stand at 0: there is no room for them.
    const int step = static_cast<int>(roundHalfEven(kRange / approvers->RecordCount()));
    for (int row = 1; !approvers->Eof(); approvers->MoveNext(), ++row)
      approvers->Fields("ListOrder")->Value(static_cast<float>(row * step));
  }
  approvers->Close();
  operation.commit();
  return false;
}

}  // namespace kv
