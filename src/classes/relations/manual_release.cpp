// SPDX-License-Identifier: Apache-2.0
// Manuals released to users, and taken back.
#include "classes/relations/relation_errors.h"
#include "classes/relations/release_rights.h"
#include "classes/session/vesk.h"
#include "common/text.h"
#include "data/operation.h"
#include "data/sql_text.h"

namespace kv {

bool clsVesk::ManualUserRelation(const std::string& ManualID, const std::string& UserID,
                                 bool HardCopy, const std::string& CopyNumber, bool Remove) {
  const std::string manual = inQuotes(ManualID);
  const std::string user = inQuotes(UserID);
  const std::string number = inQuotes(CopyNumber);
  const char* hard = HardCopy ? "True" : "False";
  const auto connection = dataServer_->Connection();
  // Documents wait that are put into the manual meanwhile, and revisions of its documents that are
  // put in force: either this copy is there and they reach it, or it is made of what they left.
  Operation operation(connection, "Manuals", "ManualID", outOfQuotes(manual));
  lockLinkedRows(connection, "Documents", "DocumentID", "ManualContents", "ManualID",
                 outOfQuotes(manual));

  requireRelease((HardCopy ? kManualHardCopies : kManualLists).at(Remove ? 1 : 0),
                 outOfQuotes(user));
  const auto contents =
      connection->OpenRecordset("Select * from manualContents Where ManualID = '" + manual + "'");
  if (contents->RecordCount() <= 0) raise(kNothingToRelease);
  contents->Close();

  const bool anyNumber = trimmed(number).empty();
  const auto held = GetRecordset(
      "Select * From Personals Where UserID = '" + user + "' and ManualID = '" + manual +
      (anyNumber ? "" : "' and CopyNumber = '" + number) + "' and HardCopy = " + hard);
  const bool holds = held->RecordCount() > 0;
  if (Remove) {
    if (!holds) raise(kManualNotHeld);
    held->DeleteAll();
  } else {
    if (holds && !HardCopy) raise(kManualHeldAlready);
    std::int32_t added = 0;
    connection->Execute(
        // Clients that read the statements know a further copy by its blank.
        std::string("INSERT INTO Personals (") + (holds ? " " : "") +
            "ManualID, DocumentID, UserID, RevisionId, HardCopy, CopyNumber ) SELECT "
            "ManualContents.ManualID, ManualContents.DocumentID, '" +
            user + "' AS Expr1, Documents.CurrentRevID, " + hard + ", '" + number +
            "' FROM ManualContents INNER JOIN Documents ON ManualContents.DocumentID = "
            "Documents.DocumentID WHERE (((ManualContents.ManualID)='" +
            manual + "'))",
        added);
    if (added == 0) raise(kManualNotAdded);
  }
  held->Close();
  operation.commit();
  return true;
}

}  // namespace kv
