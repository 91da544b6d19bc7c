// SPDX-License-Identifier: Apache-2.0
// The status of a revision as lists show it, with the register's own word for revisions.
#include "classes/revisions/revision.h"
#include "classes/revisions/revision_status.h"
#include "classes/session/vesk.h"
#include "common/convert.h"
#include "recordset/text_field.h"

namespace kv {

std::string clsVeskRevision::RevStatusDescription(const Ref<Recordset>& rs) {
  const Variant status = rs->Fields("RevisionStatus")->Value();
  const auto is = [&](RevisionStatus which) {
    return compareValues(status, static_cast<std::int16_t>(which)) == 0;
  };
  const auto label = [&](const char* key) { return oVesk_->DataServer()->Config()->Label(key, 0); };
  if (is(RevisionStatus::OutOfDate)) return "Out of date " + label("revision");
  if (is(RevisionStatus::Current)) return "Current " + label("Revision");
  if (is(RevisionStatus::BeingRevised))
    return "Being Revised by " + userName(fieldText(*rs, "Responsibleid"));
  if (is(RevisionStatus::Approved)) return "Approved";
  if (is(RevisionStatus::Rejected)) return "Rejected";
  if (!is(RevisionStatus::AwaitingApproval)) return {};
  const auto approvers = oVesk_->Revision()->approvals(toInt32(rs->Fields("RevisionID")->Value()));
  std::string text = "Awaiting Approval";
  if (approvers->RecordCount() > 0) {
    approvers->MoveFirst();
    approvers->Move(toInt16(rs->Fields("RoutingStatus")->Value()) - 1);
    text += " from " + userName(fieldText(*approvers, "UserID"));
  }
  approvers->Close();
  return text;
}

}  // namespace kv
