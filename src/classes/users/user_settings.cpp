// SPDX-License-Identifier: Apache-2.0
// Workgroups, labels of user fields, keywords, and the action queries that a user may run.
#include "classes/session/vesk.h"
#include "classes/users/user.h"
#include "common/convert.h"
#include "data/sql_text.h"
#include "recordset/found_row.h"

namespace kv {

namespace {

// Two workgroups have no row.
constexpr std::int32_t kSuperUsers = -1;
constexpr std::int32_t kViewOnlyUsers = 0;

}  // namespace

Variant clsVeskUser::ChangeWorkGroup(const std::string& UserID, const std::string& WorkgroupID) {
  oVesk_->Execute("Update VeskPRofiles Set VeskProfiles.WorkGroupID = '" + inQuotes(WorkgroupID) +
                  "' Where USerID = '" + inQuotes(UserID) + "'");
  return {};
}

std::string clsVeskUser::WorkGroup(std::int32_t WorkgroupID) {
  if (WorkgroupID == kSuperUsers) return "Super Users";
  if (WorkgroupID == kViewOnlyUsers) return "View Only Users";
  return joinText(
      firstValue(*oVesk_->GetRecordset("Select GroupTitle from Groups Where GroupID = " +
                                       std::to_string(WorkgroupID)),
                 "GroupTitle"));
}

std::string clsVeskUser::WorkgroupID(const std::string& WorkGroup) {
  return joinText(
      firstValue(*oVesk_->GetRecordset("Select GroupID from Groups Where GroupTitle = '" +
                                       inQuotes(WorkGroup) + "'"),
                 "GroupID"));
}

std::string clsVeskUser::GroupRights(const std::string& group) {
  return joinText(firstValue(
      *oVesk_->GetRecordset("Select Rights From Groups Where GroupID = '" + inQuotes(group) + "'"),
      "Rights"));
}

Ref<Recordset> clsVeskUser::Workgroups() {
  return oVesk_->GetRecordset("Select * from VeskGroups");
}

Ref<Recordset> clsVeskUser::Labels(const Ref<kvProfile>&) {
  return oVesk_->GetRecordset("Select * From UserConfig");
}

void clsVeskUser::SaveLabel(const Ref<kvProfile>&, const std::string& FieldName,
                            const std::string& FieldLabel, std::int16_t) {
  oVesk_->Execute("Update UserConfig Set " + asColumnName(FieldName) + " = '" +
                  inQuotes(FieldLabel) + "'");
}

Ref<Recordset> clsVeskUser::Keywords(const Ref<kvProfile>&, const std::string& FieldName) {
  return oVesk_->GetRecordset("Select * From Keywords Where FieldName = '" + inQuotes(FieldName) +
                              "'");
}

void clsVeskUser::AddKeyword(const Ref<kvProfile>&, const std::string& FieldName,
                             const std::string& Keyword) {
  oVesk_->Execute("Insert Into Keywords(FieldName,Keyword) Values('" + inQuotes(FieldName) + "','" +
                  inQuotes(Keyword) + "')");
}

void clsVeskUser::DeleteKeyword(const Ref<kvProfile>&, const std::string& FieldName,
                                const std::string& Keyword) {
  oVesk_->Execute("Delete * From Keywords Where FieldName = '" + inQuotes(FieldName) +
                  "' and Keyword = '" + inQuotes(Keyword) + "'");
}

void clsVeskUser::NewAction(const std::string&, const Variant&, const std::string&,
                            const std::string&) {}

Ref<Recordset> clsVeskUser::ActionUserQueries(const std::string& UserID,
                                              const std::string& GroupID) {
  return oVesk_->GetRecordset(
      "Select FilterID, FilterName from UserFilters Where (FilterFor = 0 and GroupID = '" +
      inQuotes(UserID) + "') or (FilterFor = 1) or (FilterFor = 2 and GroupID = '" +
      inQuotes(GroupID) + "')");
}

}  // namespace kv
