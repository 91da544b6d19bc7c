// SPDX-License-Identifier: Apache-2.0
// Documents in manuals.
#include "classes/relations/relation_errors.h"
#include "classes/rights/rights.h"
#include "classes/session/vesk.h"
#include "common/convert.h"
#include "data/operation.h"
#include "data/sql_text.h"

namespace kv {

namespace {

// Behind the documents whose order has been settled.
constexpr std::int16_t kPositionOfNew = 100;

}  // namespace

bool clsVesk::DocumentManualRelation(const std::string& ManualID, const std::string& DocumentID,
                                     bool Remove) {
  std::int32_t affected = 0;
  return DocumentManualRelation(ManualID, DocumentID, Remove, affected);
}

bool clsVesk::DocumentManualRelation(const std::string& ManualID, const std::string& DocumentID,
                                     bool Remove, std::int32_t& recordsaffected) {
  const std::string manual = inQuotes(ManualID);
  const std::string document = inQuotes(DocumentID);
  const auto connection = dataServer_->Connection();
  // Whoever is given the manual meanwhile waits, and gets the document with it.
  Operation operation(connection, "Manuals", "ManualID", outOfQuotes(manual));
  lockRows(connection, "Documents", "DocumentID", outOfQuotes(document));

  const bool allowed =
      UserAccess(Remove ? urRemoveDocumentsFromManualContents : urAddDocumentsToManualContents) ||
      (isCurrentUsersDocument(document) &&
       OwnerAccess(Remove ? orRemoveFromManuals : orAddToManuals));
  if (!allowed) raise(Remove ? kMayNotRemoveFromManual : kMayNotAddToManual);
  if (!isControlled(document)) raise(kUncontrolledInManual);
  if (!document_->HasCurrentRevision(document)) raise(kNoRevisionForManual);

  const std::string of = "ManualID = '" + manual + "' and DocumentID = '" + document + "'";
  const auto place = GetRecordset("Select * from ManualContents Where " + of);
  const bool there = place->RecordCount() > 0;
  if (there && !Remove) raise(kInManualAlready);
  if (!there && Remove) raise(kNotInManual);
  std::int32_t affected = 0;
  if (Remove) {
    place->Delete();
    connection->Execute("Delete Personals.* From Personals Where " + of, affected);
  } else {
    place->AddNew();
    place->Fields("ManualID")->Value(outOfQuotes(manual));
    place->Fields("DocumentID")->Value(outOfQuotes(document));
    place->Fields("Position")->Value(kPositionOfNew);
    place->Update();
    const auto row =
        GetRecordset("Select CurrentRevID From Documents Where DocumentID = '" + document + "'");
    const Variant revision = row->Fields("CurrentRevID")->Value();
    row->Close();
    connection->Execute(
        "INSERT INTO Personals( UserID, ManualID, HardCopy, CopyNumber, DocumentID, RevisionID ) "
        "SELECT Distinct Personals.UserID, Personals.ManualID, Personals.HardCopy, "
        "Personals.CopyNumber, '" +
            document + "' AS Expr1, " + std::to_string(revision.isNull() ? 0 : toInt32(revision)) +
            " AS Expr2 from Personals WHERE (((Personals.ManualID)='" + manual + "'))",
        affected);
  }
  place->Close();
  operation.commit();
  recordsaffected = affected;
  return true;
}

}  // namespace kv
