// SPDX-License-Identifier: Apache-2.0
// Documents linked with manuals, owners, approvers and users: the root object's relations, seen
// from the document.
#include "classes/documents/document.h"
#include "classes/session/vesk.h"

namespace kv {

bool clsVeskDocument::ReleaseCopy(const std::string& docid, const std::string& UserID,
                                  std::int32_t& ReleaseID) {
  return oVesk_->DocumentUserRelation(docid, UserID, true, false, ReleaseID);
}

bool clsVeskDocument::AddUser(const std::string& docid, const std::string& UserID,
                              std::int32_t& ReleaseID) {
  return oVesk_->DocumentUserRelation(docid, UserID, false, false, ReleaseID);
}

bool clsVeskDocument::CollectCopy(std::int32_t cReleaseID) {
  return oVesk_->DocumentUserRelation("", "", true, true, cReleaseID);
}

bool clsVeskDocument::RemoveUser(std::int32_t cReleaseID) {
  return oVesk_->DocumentUserRelation("", "", false, true, cReleaseID);
}

bool clsVeskDocument::IntoManual(const std::string& docid, const std::string& ManualID) {
  return oVesk_->DocumentManualRelation(ManualID, docid, false);
}

bool clsVeskDocument::OutofManual(const std::string& docid, const std::string& ManualID) {
  return oVesk_->DocumentManualRelation(ManualID, docid, true);
}

bool clsVeskDocument::AddOwner(const std::string& docid, const std::string& UserID) {
  return oVesk_->OwnsRelation(docid, UserID, false);
}

bool clsVeskDocument::RemoveOwner(const std::string& docid, const std::string& UserID) {
  return oVesk_->OwnsRelation(docid, UserID, true);
}

bool clsVeskDocument::AddApprover(const std::string& docid, const std::string& UserID) {
  return oVesk_->ApprovesRelation(docid, UserID, false);
}

bool clsVeskDocument::RemoveApprover(const std::string& docid, const std::string& UserID) {
  return oVesk_->ApprovesRelation(docid, UserID, true);
}

}  // namespace kv
