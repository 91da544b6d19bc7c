// SPDX-License-Identifier: Apache-2.0
// Who owns a document, and who must approve its revisions.
#include "classes/relations/relation_errors.h"
#include "classes/rights/rights.h"
#include "classes/session/vesk.h"
#include "data/operation.h"
#include "data/sql_text.h"

namespace kv {

namespace {

// Adds or removes the row that names a user beside a document; raises when there is nothing to do.
void changeList(const Ref<Recordset>& rs, const std::string& document, const std::string& user,
                bool remove, const LibraryError& already, const LibraryError& none) {
  const bool there = rs->RecordCount() > 0;
  if (there && !remove) raise(already);
  if (!there && remove) raise(none);
  if (remove) {
    rs->Delete();
  } else {
    rs->AddNew();
    rs->Fields("UserID")->Value(outOfQuotes(user));
    rs->Fields("DocumentID")->Value(outOfQuotes(document));
    rs->Update();
  }
  rs->Close();
}

}  // namespace

bool clsVesk::OwnsRelation(const std::string& DocumentID, const std::string& UserID, bool Remove) {
  const std::string document = inQuotes(DocumentID);
  const std::string user = inQuotes(UserID);
  Operation operation(dataServer_->Connection(), "Documents", "DocumentID", outOfQuotes(document));
  const bool assigns = UserAccess(urAssigndocumentowners);
  const bool owns = isCurrentUsersDocument(document);
  const bool ownersMay = OwnerAccess(orAddRemoveOwners);
  if (!assigns && !(owns && ownersMay)) raise(kMayNotChangeOwners);
  changeList(GetRecordset("Select * From Owners Where DocumentID = '" + document +
                          "' and UserID = '" + user + "'"),
             document, user, Remove, kOwnerAlready, kNoOwner);
  operation.commit();
  return true;
}

bool clsVesk::ApprovesRelation(const std::string& DocumentID, const std::string& UserID,
                               bool Remove) {
  const std::string document = inQuotes(DocumentID);
  const std::string user = inQuotes(UserID);
  Operation operation(dataServer_->Connection(), "Documents", "DocumentID", outOfQuotes(document));
  const bool asOwner = isCurrentUsersDocument(document) && OwnerAccess(oraddremoveapprovers);
  if (!asOwner && !UserAccess(urassigndocumentapprovers)) raise(kMayNotChangeApprovers);
  if (!isControlled(document)) raise(kNoApprovalList);
  changeList(GetRecordset("Select * From Routing Where DocumentID = '" + document +
                          "' and UserID = '" + user + "'"),
             document, user, Remove, kApproverAlready, kNoApprover);
  operation.commit();
  return true;
}

}  // namespace kv
