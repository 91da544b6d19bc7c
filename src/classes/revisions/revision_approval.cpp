// SPDX-License-Identifier: Apache-2.0
// How approvers decide about a revision.
#include "classes/revisions/revision.h"
#include "classes/revisions/revision_status.h"
#include "classes/rights/rights.h"
#include "classes/session/vesk.h"
#include "common/clock.h"
#include "common/convert.h"
#include "common/text.h"
#include "data/operation.h"
#include "data/sql_text.h"
#include "data/table_value.h"
#include "recordset/text_field.h"

namespace kv {

namespace {

// The approver whose turn it is: the routing status is his place, from 1.
void moveToTurn(Recordset& approvals, const Variant& routingStatus) {
  approvals.MoveFirst();
  approvals.Move(toInt16(routingStatus) - 1);
}

// Where a revision stands, as the caller has read it.
struct Standing {
  Variant turn;
  Variant status;
};

// Somebody else may have decided since the caller read whose turn it is: his decision would then be
// about a turn that is over, and overwrite the one that ended it.
void requireStanding(const kvDataServer& server, std::int32_t revision, const Standing& read) {
  const auto stored = openOwn(server.Connection()->database(),
                              "Select RoutingStatus, RevisionStatus From Revisions Where "
                              "RevisionID = " +
                                  std::to_string(revision));
  if (stored->Eof()) return;  // which the first write will tell
  if (stored->Fields("RoutingStatus")->Value() != read.turn ||
      stored->Fields("RevisionStatus")->Value() != read.status)
    raise(kRowChanged);
}

}  // namespace

bool clsVeskRevision::CanApprove(const std::string& UserID, std::int32_t RevisionID,
                                 const std::string& ApprovingForID) {
  if (oVesk_->DataServer()->Profile()->Administrator() == -1) return true;
  const std::string number = std::to_string(RevisionID);
  const auto revision = dataServer_->open("Select * From Revisions Where RevisionID = " + number);
  if (revision->RecordCount() <= 0 ||
      compareValues(revision->Fields("RevisionStatus")->Value(),
                    static_cast<std::int16_t>(RevisionStatus::AwaitingApproval)) != 0)
    return false;
  if (oVesk_->User()->UserIsOwner(UserID, doubledQuotes(fieldText(*revision, "DocumentID"))) &&
      settingIsOn(setting("OwnerRights"), oroverrideapproval))
    return true;
  if (ApprovingForID != UserID) return false;
  const auto approvals = dataServer_->open("Select * From Approvalrouting Where RevID = " + number +
                                           " Order By ListOrder");
  moveToTurn(*approvals, revision->Fields("RoutingStatus")->Value());
  const bool turn = fieldText(*approvals, "UserID") == outOfQuotes(UserID);
  revision->Close();
  approvals->Close();
  return turn;
}

bool clsVeskRevision::decide(Decision decision, bool inOrder, const Ref<Recordset>& rsrevisions,
                             const std::string& currentUser, const std::string& approver,
                             const Ref<Recordset>& rsApprovals, bool sendaction) {
  const std::int32_t id = toInt32(rsrevisions->Fields("RevisionID")->Value());
  savePending(rsApprovals);
  // The decision is about what the caller has read, and so is assigned before anything is read
  // anew.
  Edit ofList(rsApprovals);
  Standing standing;
  const auto status = static_cast<std::int16_t>(decision);
  if (inOrder) {
    const auto turn = rsrevisions->Fields("RoutingStatus");
    const auto state = rsrevisions->Fields("RevisionStatus");
    standing = {turn->Value(), state->Value()};
    moveToTurn(*rsApprovals, standing.turn);
    if (fieldText(*rsApprovals, "UserID") != outOfQuotes(approver)) {
      requireStanding(*dataServer_, id, {turn->OriginalValue(), state->OriginalValue()});
      return false;
    }
    rsApprovals->Fields("ApprovalStatus")->Value(status);
    setFieldOrNull(*rsApprovals, "ApprovedBy", outOfQuotes(currentUser));
    rsApprovals->Fields("DateApproved")->Value(today());
  } else {
    rsApprovals->Find("UserID = '" + inQuotes(approver) + "'");
    rsApprovals->Fields("ApprovalStatus")->Value(status);
  }
  savePending(rsrevisions);
  Operation operation(dataServer_->Connection(), "Revisions", "RevisionID", std::int64_t{id});
  if (inOrder) requireStanding(*dataServer_, id, standing);
  rsApprovals->Update();
  Edit ofRevision(rsrevisions);
  settle(rsrevisions, rsApprovals, sendaction);
  // With the decision, not after it: between the two somebody else would decide about a turn that
  // is over, or save an older state over a newer one.
  rsrevisions->Update();
  operation.commit();
  ofList.keep();
  ofRevision.keep();
  return true;
}

bool clsVeskRevision::ApproveRevision(const Ref<Recordset>& rsrevisions,
                                      const std::string& CurrentUserID,
                                      const std::string& UserApproveForID,
                                      const Ref<Recordset>& rsApprovals, bool sendaction) {
  return decide(Decision::Approved, settingIsOn(setting("ProgramOptions"), aoApproveInOrder),
                rsrevisions, CurrentUserID, UserApproveForID, rsApprovals, sendaction);
}

bool clsVeskRevision::RejectRevision(const Ref<Recordset>& rsrevisions,
                                     const std::string& CurrentUserID,
                                     const std::string& UserRejectforID,
                                     const Ref<Recordset>& rsApprovals, bool sendaction) {
  const auto options = dataServer_->open("Select ProgramOptions From VeskConfig");
  const bool inOrder = settingIsOn(fieldText(*options, "ProgramOptions"), aoApproveInOrder);
  options->Close();
  return decide(Decision::Rejected, inOrder, rsrevisions, CurrentUserID, UserRejectforID,
                rsApprovals, sendaction);
}

void clsVeskRevision::SaveApprovalNotes(const std::string& Notes, const std::string& UserID,
                                        std::int32_t RevID) {
  const auto rs =
      dataServer_->open("Select * from ApprovalRouting Where RevID = " + std::to_string(RevID) +
                        " and UserID = '" + inQuotes(UserID) + "'");
  if (rs->RecordCount() > 0) {
    setFieldOrNull(*rs, "Notes", Notes);
    rs->Update();
  }
  rs->Close();
}

}  // namespace kv
