// SPDX-License-Identifier: Apache-2.0
#include "desk/revisions/set_current_revision.h"

#include "classes/rights/rights.h"
#include "common/convert.h"
#include "common/text.h"
#include "data/table_value.h"
#include "desk/refusal.h"

namespace kv::desk {

namespace {

void requireReady(const Session& session, const FoundRevision& found, std::int32_t revision) {
  const std::string named = "revision " + std::to_string(revision);
  const auto document = controlledDocument(session, found.documentId);
  const bool pointed = compareValues(document->Fields("CurrentRevID")->Value(), revision) == 0;
  if (hasStatus(found, RevisionStatus::Current) && pointed)
    refuse("The " + named + " is in force already.");
  // One that was in force has been approved in its time.
  if (hasStatus(found, RevisionStatus::Approved) || hasStatus(found, RevisionStatus::OutOfDate) ||
      hasStatus(found, RevisionStatus::Current))
    return;
  const auto approvers = openOwn(
      session.database(),
      "Select UserID From Routing Where DocumentID = '" + doubledQuotes(found.documentId) + "'",
      kReadOnly);
  if (hasStatus(found, RevisionStatus::BeingRevised) && approvers->RecordCount() == 0) return;
  refuse("The " + named + " is not approved: " + standingText(session, found.row) + ".");
}

std::vector<std::int32_t> othersInForce(const Session& session, const FoundRevision& found,
                                        std::int32_t revision) {
  const auto rs =
      openOwn(session.database(),
              "Select RevisionID From Revisions Where RevisionStatus = " +
                  std::to_string(static_cast<int>(RevisionStatus::Current)) +
                  " and DocumentID = '" + doubledQuotes(found.documentId) + "' and RevisionID <> " +
                  std::to_string(revision) + " Order By RevisionID",
              kReadOnly);
  std::vector<std::int32_t> revisions;
  for (; !rs->Eof(); rs->MoveNext()) revisions.push_back(toInt32(rs->Fields(0)->Value()));
  return revisions;
}

}  // namespace

CurrentRevision setCurrentRevision(const Session& session, std::int32_t revision) {
  session.requireRight(urSetCurrentRevision);
  Transaction transaction(session);
  const auto found = lockedRevision(session, transaction, revision, findRevision);
  transaction.lock("Documents", "DocumentID", found.documentId);
  requireReady(session, found, revision);
  auto before = othersInForce(session, found, revision);
  const SentActions sent(session, found.documentId, revision);
  Ref<Recordset> documents;
  session->Revision()->SetAsCurrentRevision(found.row, documents, true);
  transaction.commit();
  return {.step = stepDone(session, found, revision, sent), .outOfDate = std::move(before)};
}

}  // namespace kv::desk
