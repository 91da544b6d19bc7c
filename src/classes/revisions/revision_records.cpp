// SPDX-License-Identifier: Apache-2.0
// The record operations of clsVeskRevision.
#include <filesystem>

#include "classes/revisions/revision.h"
#include "classes/revisions/revision_status.h"
#include "classes/session/vesk.h"
#include "common/clock.h"
#include "common/convert.h"
#include "common/error.h"
#include "common/path.h"
#include "common/text.h"
#include "data/operation.h"
#include "data/sql_text.h"
#include "recordset/text_field.h"

namespace kv {

namespace {

// A plain number, not one of the library's codes.
constexpr std::int32_t kNoFile = 55666;

constexpr std::int16_t number(RevisionStatus status) noexcept {
  return static_cast<std::int16_t>(status);
}

bool isStatus(const Variant& value, RevisionStatus status) {
  return compareValues(value, number(status)) == 0;
}

bool isRegularFile(const std::string& path) {
  if (!isStorableText(path)) return false;
  std::error_code error;
  return std::filesystem::is_regular_file(pathOf(path), error);
}

}  // namespace

std::int32_t clsVeskRevision::Add(const std::string& DocumentID, const std::string& RevisionLevel,
                                  const std::string& user1, const std::string& user2,
                                  const std::string& ChangeDescription, const std::string& location,
                                  bool current, const std::string& responsibleid,
                                  const std::string& dateEffective) {
  Operation operation(dataServer_->Connection());
  // The row is found again by a level that only it has, and then gets its own.
  const std::string key = inQuotes(responsibleid) + stampText(now());
  const auto added = dataServer_->open("Select * from Revisions Where RevisionID = -1");
  added->AddNew();
  added->Fields("RevisionLevel")->Value(outOfQuotes(key));
  added->Update();
  added->Close();

  const auto row = dataServer_->open("Select * From Revisions Where RevisionLevel = '" + key + "'");
  // The newest, should somebody have given a revision such a level by hand.
  row->MoveLast();
  setFieldOrNull(*row, "RevisionLevel", RevisionLevel);
  setFieldOrNull(*row, "RevUser1", user1);
  setFieldOrNull(*row, "RevUser2", user2);
  setFieldOrNull(*row, "ChangeDescription", ChangeDescription);
  setFieldOrNull(*row, "Location", location);
  setFieldOrNull(*row, "DocumentID", outOfQuotes(DocumentID));
  setFieldOrNull(*row, "ResponsibleID", outOfQuotes(responsibleid));
  setFieldOrNull(*row, "EffectiveDate", dateEffective);
  row->Fields("RoutingStatus")->Value(std::int16_t{0});
  row->Fields("RevisionStatus")
      ->Value(number(current ? RevisionStatus::Current : RevisionStatus::BeingRevised));
  const std::int32_t id = toInt32(row->Fields("RevisionID")->Value());
  row->Update();
  row->Close();
  operation.commit();
  return id;
}

void clsVeskRevision::SaveData(std::int32_t RevisionID, const std::string& RevisionLevel,
                               const std::string& user1, const std::string& user2,
                               const std::string& ChangeDescription, const std::string& location,
                               const std::string& EffectiveDate) {
  if (!trimmed(location).empty() && !isRegularFile(location))
    throw Error(kNoFile, "Revision.SaveData",
                "No File Found at present location.  To save this revision data a valide file "
                "location is required.");
  Operation operation(dataServer_->Connection(), "Revisions", "RevisionID",
                      std::int64_t{RevisionID});
  const auto row =
      dataServer_->open("Select * from Revisions Where RevisionID = " + std::to_string(RevisionID));
  if (row->RecordCount() > 0) {
    setFieldOrNull(*row, "EffectiveDate", EffectiveDate);
    if (isStatus(row->Fields("RevisionStatus")->Value(), RevisionStatus::Current) &&
        row->Fields("EffectiveDate")->IsNull())
      row->Fields("EffectiveDate")->Value(today());
    setFieldOrNull(*row, "RevisionLevel", RevisionLevel);
    setFieldOrNull(*row, "RevUser1", user1);
    setFieldOrNull(*row, "RevUser2", user2);
    setFieldOrNull(*row, "ChangeDescription", ChangeDescription);
    setFieldOrNull(*row, "Location", location);
    row->Update();
  }
  row->Close();
  operation.commit();
}

bool clsVeskRevision::LoadRevisionData(std::int32_t RevisionID, std::string& DocumentID,
                                       std::int16_t& RoutingStatus, std::int16_t& RevisionStatus,
                                       std::string& RevisionLevel, std::string& user1,
                                       std::string& user2, std::string& EffectiveDate,
                                       std::string& ChangeDescription, std::string& location,
                                       std::string& statusstring, Ref<Recordset>& approvals) {
  const auto row =
      dataServer_->open("Select * from Revisions Where RevisionID = " + std::to_string(RevisionID));
  if (row->RecordCount() <= 0) return false;
  DocumentID = fieldText(*row, "DocumentID");
  RevisionLevel = fieldText(*row, "RevisionLevel");
  user1 = fieldText(*row, "RevUser1");
  user2 = fieldText(*row, "RevUser2");
  ChangeDescription = fieldText(*row, "ChangeDescription");
  location = fieldText(*row, "Location");
  EffectiveDate = fieldText(*row, "EffectiveDate");
  approvals = GetRevApprovalList(RevisionID);
  RoutingStatus = toInt16(row->Fields("RoutingStatus")->Value());
  RevisionStatus = toInt16(row->Fields("RevisionStatus")->Value());
  tellStatus(*row, *approvals, statusstring);
  row->Close();
  return true;
}

void clsVeskRevision::tellStatus(Recordset& revision, Recordset& approvers, std::string& text) {
  switch (static_cast<RevisionStatus>(toInt16(revision.Fields("RevisionStatus")->Value()))) {
    case RevisionStatus::OutOfDate: text = "Out of date revision"; break;
    case RevisionStatus::Current: text = "Current Revision"; break;
    case RevisionStatus::BeingRevised:
      text = "Being Revised by " +
             oVesk_->User()->getUserName(doubledQuotes(fieldText(revision, "ResponsibleID")));
      break;
    case RevisionStatus::AwaitingApproval:
      if (approvers.RecordCount() < 1) {
        text = "Awaiting Approval";
        break;
      }
      // The routing status is the place, from 1, of the approver whose turn it is.
      approvers.MoveFirst();
      approvers.Move(toInt16(revision.Fields("RoutingStatus")->Value()) - 1);
      text = "Awaiting Approval from " +
             oVesk_->User()->getUserName(doubledQuotes(fieldText(approvers, "UserID")));
      break;
    case RevisionStatus::Approved: text = "Approved"; break;
    case RevisionStatus::Rejected: text = "Rejected"; break;
    default: break;
  }
}

Ref<Recordset> clsVeskRevision::GetRevRS(std::int32_t RevID) {
  return dataServer_->open("Select * From Revisions Where RevisionID = " + std::to_string(RevID));
}

Ref<Recordset> clsVeskRevision::GetRevApprovalList(std::int32_t id) {
  return dataServer_->open("Select * from ApprovalRouting Where RevID = " + std::to_string(id) +
                           " Order By ListOrder");
}

Ref<Recordset> clsVeskRevision::approvals(std::int32_t RevisionID) {
  return GetRevApprovalList(RevisionID);
}

Variant clsVeskRevision::GetRevFileName(const std::string& RevisionID) {
  const auto row = dataServer_->open("Select Location from Revisions Where RevisionID = " +
                                     asNumber(RevisionID));
  Variant location;
  if (row->RecordCount() > 0) location = fieldText(*row, "Location");
  row->Close();
  return location;
}

bool clsVeskRevision::DeleteRevision(std::int32_t id) noexcept {
  try {
    dataServer_->execute("Delete Revisions.* From Revisions Where RevisionID = " +
                         std::to_string(id));
    return true;
  } catch (const std::exception&) {
    return false;
  }
}

bool clsVeskRevision::SetUsersRevisionTo(const std::string& ReleaseID,
                                         const std::string& RevisionID) {
  dataServer_->execute("UPDATE Personals SET Personals.RevisionID = " + asNumber(RevisionID) +
                       " WHERE ReleaseID = " + asNumber(ReleaseID));
  return false;
}

}  // namespace kv
