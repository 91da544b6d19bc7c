// SPDX-License-Identifier: Apache-2.0
// How a revision goes to its approvers.
#include "classes/revisions/revision.h"
#include "classes/revisions/revision_status.h"
#include "classes/rights/rights.h"
#include "classes/session/vesk.h"
#include "common/clock.h"
#include "common/convert.h"
#include "common/text.h"
#include "data/operation.h"
#include "recordset/text_field.h"

namespace kv {

namespace {

constexpr std::int64_t kDaysToDecide = 5;
constexpr std::int16_t kSentByRegister = 1;
// Where actions about approval are signed by the logged-in user.
constexpr int kSignedByUser = 2;
constexpr int kSignedByOriginator = 1;

// The place, from 1, of the first row with a decision, on which the set then stands; 0 when there
// is none.
std::int16_t placeOf(Recordset& approvals, std::int16_t decision) {
  std::int16_t place = 1;
  if (approvals.RecordCount() > 0) approvals.MoveFirst();
  for (; !approvals.Eof(); approvals.MoveNext(), ++place)
    if (compareValues(approvals.Fields("ApprovalStatus")->Value(), decision) == 0) return place;
  return 0;
}

}  // namespace

std::string clsVeskRevision::setting(const char* key) const {
  return joinText(oVesk_->DataServer()->Config()->Value(key));
}

std::string clsVeskRevision::userName(const std::string& userId) const {
  return joinText(oVesk_->MainUser()->UserValue(userId, "UserName"));
}

clsVeskRevision::Signature clsVeskRevision::signature(int asUser) const {
  const Variant originator = oVesk_->DataServer()->Config()->Value("Originator");
  if (compareValues(originator, std::int32_t{kSignedByOriginator}) == 0) {
    const std::string id = setting("OriginatorID");
    return {textOrNull(userName(id)), textOrNull(id)};
  }
  if (!originator.isEmpty() && compareValues(originator, std::int32_t{asUser}) == 0) {
    const auto profile = oVesk_->DataServer()->Profile();
    return {textOrNull(profile->UserName()), textOrNull(profile->UserID())};
  }
  return {Null, Null};
}

Ref<Recordset> clsVeskRevision::newAction(int signAsUser) const {
  auto action = oVesk_->ActionRecord();
  action->AddNew();
  const Signature signed_ = signature(signAsUser);
  action->Fields("Originator")->Value(signed_.name);
  action->Fields("OriginatorID")->Value(signed_.id);
  action->Fields("DateOpened")->Value(today());
  action->Fields("DateDue")->Value(today().plusDays(kDaysToDecide));
  action->Fields("ReferenceID")->Value(textOrNull(setting("DBID")));
  action->Fields("ActionType")->Value(kSentByRegister);
  return action;
}

void clsVeskRevision::sendTo(const std::string& userId, const std::string& subject,
                             const std::string& description, const Variant& reference) {
  const auto action = newAction(kSignedByUser);
  action->Fields("Subject")->Value(subject);
  setFieldOrNull(*action, "AssigneeID", userId);
  setFieldOrNull(*action, "Assignee", userName(userId));
  action->Fields("Description")->Value(description);
  action->Fields("Reference")->Value(reference);
  oVesk_->SendActions(action);
}

Variant clsVeskRevision::RouteForApproval(const Ref<Recordset>& rs, bool) {
  const std::int32_t id = toInt32(rs->Fields("RevisionID")->Value());
  const std::string number = std::to_string(id);
  const std::string document = fieldText(*rs, "DocumentID");
  const std::string joined = doubledQuotes(document);
  Operation operation(dataServer_->Connection(), "Revisions", "RevisionID", std::int64_t{id});
  const auto known = dataServer_->open("Select * From ApprovalRouting Where RevID = " + number);
  const bool first = known->RecordCount() <= 0;
  known->Close();
  if (first)
    dataServer_->execute(
        "Insert Into ApprovalRouting(RevID,UserID,ListOrder,ApprovalStatus) Select " + number +
        ", Routing.UserID, Routing.ListOrder , 0 From Routing Where Routing.DocumentID = '" +
        joined + "'");
  else
    dataServer_->execute("Update ApprovalRouting Set ApprovalStatus = 0 Where RevID = " + number);
  Edit edit(rs);
  rs->Fields("RoutingStatus")->Value(std::int16_t{1});
  rs->Fields("RevisionStatus")->Value(static_cast<std::int16_t>(RevisionStatus::AwaitingApproval));
  const auto approvers = dataServer_->open("Select * From ApprovalRouting Where RevID = " + number +
                                           " Order By ListOrder");
  if (approvers->RecordCount() <= 0) {
    rs->Fields("RevisionStatus")->Value(static_cast<std::int16_t>(RevisionStatus::Approved));
  } else {
    approvers->MoveFirst();
    const std::string title = joinText(oVesk_->Document()->Value(joined, "DocumentTitle"));
    sendTo(fieldText(*approvers, "UserID"), "Your approval is required",
           setting("Revision") + " " + fieldText(*rs, "RevisionLevel") + " of the " + title + " " +
               setting("Document") + " requires your approval.",
           textOrNull(document));
  }
  approvers->Close();
  operation.commit();
  edit.keep();
  return {};
}

void clsVeskRevision::NotifyNextapprover(const Ref<Recordset>& rsrevisions,
                                         const Ref<Recordset>& rsApprovals, bool sendaction) {
  const auto& connection = dataServer_->Connection();
  Operation operation(connection, "Revisions", "RevisionID",
                      std::int64_t{toInt32(rsrevisions->Fields("RevisionID")->Value())});
  // Both sets are read again: what follows is decided by what is stored, and nobody decides
  // meanwhile.
  connection->database()->wrote();
  Edit edit(rsrevisions);
  settle(rsrevisions, rsApprovals, sendaction);
  operation.commit();
  edit.keep();
}

void clsVeskRevision::settle(const Ref<Recordset>& rsrevisions, const Ref<Recordset>& rsApprovals,
                             bool sendaction) {
  const Variant number = rsrevisions->Fields("RevisionID")->Value();
  const auto title = [&] {
    return joinText(oVesk_->Document()->Value(doubledQuotes(fieldText(*rsrevisions, "DocumentID")),
                                              "DocumentTitle"));
  };
  const auto level = [&] { return fieldText(*rsrevisions, "RevisionLevel"); };
  const auto setStatus = [&](RevisionStatus status) {
    rsrevisions->Fields("RevisionStatus")->Value(static_cast<std::int16_t>(status));
  };
  if (placeOf(*rsApprovals, static_cast<std::int16_t>(Decision::Rejected)) > 0) {
    setStatus(RevisionStatus::Rejected);
    if (sendaction && oVesk_->AppOption(aoNotifyApprovalReq))
      sendTo(fieldText(*rsrevisions, "ResponsibleID"), "A revision has been rejected.",
             setting("Revision") + " " + level() + " of " + setting("Document") + " " + title() +
                 " has been rejected.",
             joinText(number));
  } else if (const auto place = placeOf(*rsApprovals, static_cast<std::int16_t>(Decision::Pending));
             place > 0) {
    rsrevisions->Fields("RoutingStatus")->Value(place);
    const std::string options = setting("ProgramOptions");
    if (sendaction && settingIsOn(options, aoNotifyApprovalReq) &&
        settingIsOn(options, aoSendActions))
      sendTo(fieldText(*rsApprovals, "UserID"), "Your Approval is required.",
             "Your Approval is required for " + setting("Revision") + " " + level() + " of the " +
                 title() + " " + setting("Document"),
             joinText(number));
  } else {
    setStatus(RevisionStatus::Approved);
  }
}

}  // namespace kv
