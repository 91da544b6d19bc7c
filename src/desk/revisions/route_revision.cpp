// SPDX-License-Identifier: Apache-2.0
#include "desk/revisions/route_revision.h"

#include "desk/documents/document_access.h"
#include "desk/refusal.h"

namespace kv::desk {

namespace {

void requireRoutable(const Session& session, const FoundRevision& found, std::int32_t revision,
                     bool again) {
  (void)controlledDocument(session, found.documentId);
  if (hasStatus(found, RevisionStatus::BeingRevised) || hasStatus(found, RevisionStatus::Rejected))
    return;
  const bool decided = hasStatus(found, RevisionStatus::AwaitingApproval) ||
                       hasStatus(found, RevisionStatus::Approved);
  if (decided && again) return;
  refuse("The revision " + std::to_string(revision) +
         " cannot be routed: " + standingText(session, found.row) +
         (decided ? ". --again asks all approvers once more." : "."));
}

}  // namespace

RevisionStep routeRevision(const Session& session, std::int32_t revision, bool again) {
  Transaction transaction(session);
  const auto found = lockedRevision(session, transaction, revision, findRevision);
  requireOwner(found.owned);
  requireRoutable(session, found, revision, again);
  const SentActions sent(session, found.documentId, revision);
  session->Revision()->RouteForApproval(found.row, true);
  found.row->Update();
  transaction.commit();
  return stepDone(session, found, revision, sent);
}

}  // namespace kv::desk
