// SPDX-License-Identifier: Apache-2.0
#include "desk/revisions/revision_decision.h"

#include "classes/rights/rights.h"
#include "common/convert.h"
#include "common/text.h"
#include "desk/people/user_lookup.h"
#include "desk/refusal.h"
#include "desk/revisions/standing.h"
#include "recordset/text_field.h"

namespace kv::desk {

namespace {

std::string nameOf(const Session& session, const std::string& id) {
  const std::string name = joinText(session->MainUser()->UserValue(id, "UserName"));
  return name.empty() ? id : name;
}

// The ID as the list has it; nothing for one that is not there.
std::optional<std::string> onList(Recordset& approvals, const std::string& id) {
  if (approvals.RecordCount() > 0) approvals.MoveFirst();
  for (; !approvals.Eof(); approvals.MoveNext())
    if (const std::string listed = fieldText(approvals, "UserID"); equalNoCase(listed, id))
      return listed;
  return std::nullopt;
}

}  // namespace

Approver findApprover(const Session& session, std::int32_t revision,
                      const std::optional<std::string>& user) {
  const auto list = session->Revision()->GetRevApprovalList(revision);
  std::string id = user.value_or(session.profile()->UserID());
  // A user who is gone is still asked for approval, under the ID.
  auto listed = onList(*list, id);
  if (!listed && user) {
    id = findUser(session.database(), *user);
    listed = onList(*list, id);
  }
  if (listed) return {.id = *listed, .name = nameOf(session, *listed)};
  refuse(nameOf(session, id) + " is not on the approval list of revision " +
         std::to_string(revision) + (user ? "." : "; --for says in whose place."));
}

void requireDecider(const Session& session, const FoundRevision& found, std::int32_t revision,
                    const Approver& approver) {
  if (session->UserAccess(urApprovalOverride)) return;
  const bool self = equalNoCase(approver.id, session.profile()->UserID());
  // The library knows a user by the ID that the list has.
  const std::string& user = self ? approver.id : session.profile()->UserID();
  if (session->Revision()->CanApprove(doubledQuotes(user), revision, doubledQuotes(approver.id)))
    return;
  if (self) refuseTurn(session, found, revision, approver);
  if (found.owned) deny(session->orDescription(oroverrideapproval));
  deny(session->urDescription(urApprovalOverride));
}

void refuseTurn(const Session& session, const FoundRevision& found, std::int32_t revision,
                const Approver& approver) {
  refuse("It is not the turn of " + approver.name + " to decide about revision " +
         std::to_string(revision) + ": " + standingText(session, found.row));
}

}  // namespace kv::desk
