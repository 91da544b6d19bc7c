// SPDX-License-Identifier: Apache-2.0
// Documents released to users, and taken back.
#include <fmt/format.h>

#include <random>

#include "classes/relations/relation_errors.h"
#include "classes/relations/release_rights.h"
#include "classes/session/vesk.h"
#include "common/clock.h"
#include "common/convert.h"
#include "common/text.h"
#include "data/operation.h"
#include "data/sql_text.h"

namespace kv {

namespace {

// What a release has in place of a manual when the document was released by itself.
constexpr const char* kNoManual = "0";

// By which a new row is found again: the moment, and a number that nobody else has drawn.
std::string temporaryKey() {
  std::random_device device;
  return fmt::format("{}-{:08x}{:08x}", stampText(now()), device(), device());
}

}  // namespace

bool clsVesk::DocumentUserRelation(const std::string& DocumentID, const std::string& UserID,
                                   bool HardCopy, bool Remove, std::int32_t& ReleaseID) {
  std::string document = inQuotes(DocumentID);
  const std::string user = inQuotes(UserID);
  const auto connection = dataServer_->Connection();
  Operation operation(connection);
  if (Remove && document.empty())
    document = doubledQuotes(joinText(ReleaseValue(ReleaseID, "DocumentID")));
  lockRows(connection, "Documents", "DocumentID", outOfQuotes(document));

  const ReleaseRights& rights =
      (HardCopy ? kDocumentHardCopies : kDocumentLists).at(Remove ? 1 : 0);
  const bool asOwner = isCurrentUsersDocument(document) && OwnerAccess(rights.asOwner);
  if (!asOwner) requireRelease(rights, outOfQuotes(user));
  if (!trimmed(document).empty()) {
    if (!isControlled(document)) raise(kUncontrolledToUsers);
    if (!document_->HasCurrentRevision(document)) raise(kNoRevisionForUsers);
  }

  if (Remove) {
    if (ReleaseID == 0) raise(kNoReleaseId);
    if (Execute("Delete * From Personals Where ReleaseID = " + std::to_string(ReleaseID)) == 0)
      raise(kReleaseGone);
    operation.commit();
    return true;
  }

  auto release = GetRecordset("Select * From Personals Where DocumentID = '" + document +
                              "' and UserID = '" + user + "' and ManualID = '" + kNoManual +
                              "' and HardCopy = " + (HardCopy ? "True" : "False"));
  if (!HardCopy && release->RecordCount() > 0) raise(kOnPersonalListAlready);
  const std::string key = temporaryKey();
  release->AddNew();
  release->Fields("UserID")->Value(key);
  release->Update();
  release->Close();
  release = GetRecordset("Select * From Personals Where UserID = '" + key + "'");
  release->Fields("DocumentID")->Value(outOfQuotes(document));
  release->Fields("UserID")->Value(outOfQuotes(user));
  release->Fields("ManualID")->Value(kNoManual);
  release->Fields("HardCopy")->Value(HardCopy);
  release->Fields("RevisionID")->Value(document_->Value(document, "CurrentRevID"));
  const std::int32_t id = toInt32(release->Fields("ReleaseID")->Value());
  release->Update();
  release->Close();
  operation.commit();
  ReleaseID = id;
  return true;
}

}  // namespace kv
