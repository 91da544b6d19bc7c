// SPDX-License-Identifier: Apache-2.0
// How a revision is put in force.
#include "classes/revisions/revision.h"
#include "classes/revisions/revision_status.h"
#include "classes/rights/rights.h"
#include "classes/session/vesk.h"
#include "common/clock.h"
#include "common/convert.h"
#include "common/library_error.h"
#include "common/text.h"
#include "data/operation.h"
#include "recordset/text_field.h"

namespace kv {

namespace {

constexpr LibraryError kDocumentNotThere{40, "SetAsCurrentRevision",
                                         "The Document is not present in the current set."};
// Where actions about releases are signed by the logged-in user: not the number it is where actions
// about approval are.
constexpr int kSignedByUser = 0;

// A title that is too long for a subject is cut.
std::string updatedSubject(const std::string& title) {
  constexpr std::size_t kLongest = 60;
  constexpr std::size_t kKept = 58;
  if (characterCount(title) <= kLongest) return title + " has been updated.";
  return title.substr(0, byteOffset(title, kKept)) + "... has been updated.";
}

// The statement for the users to tell; empty when nobody is.
std::string holdersOf(const std::string& document, bool hard, bool virtually) {
  const std::string of = "Where DocumentID = '" + doubledQuotes(document) + "'";
  if (hard && virtually) return "Select distinct UserID from Personals " + of;
  if (hard) return "Select UserID From Personals " + of + " and HardCopy <> 0";
  if (virtually) return "Select Userid from Personals " + of + " and HardCopy = 0";
  return {};
}

}  // namespace

void clsVeskRevision::SetAsCurrentRevision(const Ref<Recordset>& rsRevision,
                                           Ref<Recordset>& rsDocuments, bool SendActions) {
  const std::string document = fieldText(*rsRevision, "DocumentID");
  const std::string quoted = doubledQuotes(document);
  savePending(rsRevision);
  savePending(rsDocuments);
  Operation operation(dataServer_->Connection(), "Documents", "DocumentID", document);
  Variant position;
  if (!rsDocuments)
    rsDocuments = dataServer_->open("Select * From Documents Where documentid = '" + quoted + "'");
  else if (!rsDocuments->Eof() && !rsDocuments->Bof())
    position = rsDocuments->Bookmark();
  if (rsDocuments->RecordCount() > 0) rsDocuments->MoveFirst();
  rsDocuments->Find("DocumentID = '" + quoted + "'");
  if (rsDocuments->Eof()) raise(kDocumentNotThere);

  operation.keep([&] {
    dataServer_->execute(
        "Update Revisions Set RevisionStatus = 0 Where RevisionStatus = 1 and DocumentID = '" +
        quoted + "'");
  });
  // Read again under the lock: for a revision that is gone nothing goes out of date.
  dataServer_->Connection()->database()->wrote();
  (void)rsRevision->Fields("RevisionID")->Value();
  Edit ofRevision(rsRevision);
  Edit ofDocument(rsDocuments);
  operation.keep([&] {
    const Date day = today();
    rsRevision->Fields("RevisionStatus")->Value(static_cast<std::int16_t>(RevisionStatus::Current));
    rsRevision->Fields("EffectiveDate")->Value(day);
    rsDocuments->Fields("RevisionLevel")->Value(rsRevision->Fields("RevisionLevel")->Value());
    rsDocuments->Fields("EffectiveDate")->Value(day);
    rsDocuments->Fields("CurrentRevID")->Value(rsRevision->Fields("RevisionID")->Value());
    if (SendActions && oVesk_->AppOption(aoSendActions)) tellHolders(*rsRevision, *rsDocuments);
  });
  operation.keep([&] { rsRevision->Update(); });
  operation.keep([&] { rsDocuments->Update(); });
  if (!position.isEmpty()) rsDocuments->Bookmark(position);
  operation.commit();
  ofRevision.keep();
  ofDocument.keep();
}

void clsVeskRevision::tellHolders(Recordset& revision, Recordset& document) {
  const std::string id = fieldText(document, "DocumentID");
  const bool hard = oVesk_->AppOption(aoNotifyHCUsers);
  const bool virtually = oVesk_->AppOption(aoNotifyVirtualUsers);
  const std::string statement = holdersOf(id, hard, virtually);
  if (statement.empty()) return;
  const auto holders = oVesk_->MainUser()->UserRecords(oVesk_->GetRecordset(statement));
  if (holders->RecordCount() <= 0) return;
  const std::string title = fieldText(document, "DocumentTitle");
  const auto action = newAction(kSignedByUser);
  action->Fields("Subject")->Value(updatedSubject(title));
  action->Fields("Description")
      ->Value(setting("Revision") + " " + fieldText(revision, "RevisionLevel") + " of " +
              setting("Document") + " " + title + " has been released.");
  setFieldOrNull(*action, "Reference", id);
  oVesk_->SendActions(action, holders);
}

}  // namespace kv
