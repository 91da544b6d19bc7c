// SPDX-License-Identifier: Apache-2.0
#include "desk/revisions/decide_revision.h"

#include "common/text.h"
#include "desk/refusal.h"
#include "desk/revisions/revision_decision.h"

namespace kv::desk {

DecidedRevision decideRevision(const Session& session, std::int32_t revision, Decision decision,
                               const std::optional<std::string>& approver,
                               const std::optional<std::string>& notes) {
  Transaction transaction(session);
  const auto found = lockedRevision(session, transaction, revision, findRevisionToDecide);
  if (!hasStatus(found, RevisionStatus::AwaitingApproval))
    refuse("The revision " + std::to_string(revision) +
           " is not awaiting approval: " + standingText(session, found.row) + ".");
  const Approver decider = findApprover(session, revision, approver);
  requireDecider(session, found, revision, decider);
  const SentActions sent(session, found.documentId, revision);
  const std::string self = doubledQuotes(session.profile()->UserID());
  const std::string whose = doubledQuotes(decider.id);
  const auto& revisions = session->Revision();
  const auto list = revisions->GetRevApprovalList(revision);
  const bool taken = decision == Decision::Approve
                         ? revisions->ApproveRevision(found.row, self, whose, list)
                         : revisions->RejectRevision(found.row, self, whose, list);
  if (!taken) refuseTurn(session, found, revision, decider);
  if (notes) revisions->SaveApprovalNotes(*notes, whose, revision);
  transaction.commit();
  return {.step = stepDone(session, found, revision, sent), .approver = decider.name};
}

}  // namespace kv::desk
