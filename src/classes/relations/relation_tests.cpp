// SPDX-License-Identifier: Apache-2.0
// What several relations test before they change anything.
#include "classes/relations/release_rights.h"
#include "classes/session/vesk.h"
#include "common/convert.h"
#include "common/text.h"

namespace kv {

bool clsVesk::isCurrentUsersDocument(const std::string& DocumentID) const {
  return user_->UserIsOwner(doubledQuotes(dataServer_->Profile()->UserID()), DocumentID);
}

bool clsVesk::isControlled(const std::string& DocumentID) const {
  const Variant controlled = document_->Value(DocumentID, "Controlled");
  return !controlled.isNull() && toBoolean(controlled);
}

void clsVesk::requireRelease(const ReleaseRights& rights, const std::string& UserID) const {
  if (UserAccess(rights.asAnyone)) return;
  const bool ownList = rights.ownList != 0 && UserID == dataServer_->Profile()->UserID();
  if (!ownList) raise(rights.refusal);
  if (!UserAccess(rights.ownList)) raise(rights.ownListRefusal);
}

}  // namespace kv
