// SPDX-License-Identifier: Apache-2.0
// The records of clsVeskUser, and its saved queries.
#include "classes/session/vesk.h"
#include "classes/users/user.h"
#include "common/convert.h"
#include "common/text.h"
#include "data/operation.h"
#include "data/sql_text.h"
#include "recordset/found_row.h"
#include "recordset/text_field.h"

namespace kv {

namespace {

constexpr std::int32_t kEverybody = -1;

// Whether the search from the current row of `rs` has found the user.
bool findUser(Recordset& rs, const std::string& userId) {
  rs.Find("UserID = '" + inQuotes(userId) + "'");
  return !rs.Eof();
}

// The first row's value of a set's one column, "" when there is no row.
std::string firstText(const Ref<Recordset>& rs, const char* column) {
  return joinText(firstValue(*rs, column));
}

}  // namespace

Ref<Recordset> clsVeskUser::Records(std::int32_t filterid, const std::string& SortFields,
                                    const std::string& cSQL, const std::string& Fields) {
  std::string sql = cSQL;
  return Records(filterid, SortFields, sql, Fields);
}

Ref<Recordset> clsVeskUser::Records(std::int32_t filterid, const std::string& SortFields,
                                    std::string& cSQL, const std::string& Fields) {
  const auto server = oVesk_->DataServer();
  if (!trimmed(cSQL).empty()) return server->open(cSQL);
  if (filterid == 0) return {};
  const std::string sort = SortFields.empty() ? "UserName" : SortFields;
  const std::string fields = Fields.empty() ? "*" : Fields;
  if (filterid == kEverybody)
    return server->open("Select " + fields + " from Users Order By " + sort);
  const auto query = GetQuery(filterid);
  query->LoadFieldTypes(server->open("Select * From UserConfig"));
  query->requireJoinable();
  cSQL = query->JetSQL();
  return server->open("Select " + fields + " from Users " + cSQL + " Order By " + sort);
}

Ref<Recordset> clsVeskUser::Record(const std::string& id) {
  return oVesk_->DataServer()->open("Select * From users Where UserID = '" + inQuotes(id) + "'");
}

Ref<Recordset> clsVeskUser::GetRecordset(const std::string&) { return {}; }

std::string clsVeskUser::UserIDFromID(std::int32_t id) {
  return firstText(
      oVesk_->DataServer()->open("Select UserID From Users Where ID = " + std::to_string(id)),
      "UserID");
}

std::string clsVeskUser::UserID(const std::string& UserName) {
  return firstText(oVesk_->GetRecordset("Select UserID From VeskProfiles Where UserName = '" +
                                        inQuotes(UserName) + "'"),
                   "UserID");
}

std::string clsVeskUser::getUserName(const std::string& id) {
  return firstText(oVesk_->GetRecordset("Select UserName From VeskProfiles Where UserID = '" +
                                        inQuotes(id) + "'"),
                   "UserName");
}

bool clsVeskUser::LoadUser(const Ref<Recordset>& rs, const std::string& UserID,
                           std::string& UserName, std::string& Alias, std::string& Password,
                           std::string& title, std::string& email, std::string& WorkgroupID) {
  if (!findUser(*rs, UserID)) return false;
  UserName = fieldText(*rs, "UserName");
  Alias = fieldText(*rs, "Alias");
  Password = fieldText(*rs, "Password");
  title = fieldText(*rs, "Title");
  email = fieldText(*rs, "Email");
  const auto profile = oVesk_->GetRecordset("Select GroupID From VeskProfiles Where UserID = '" +
                                            inQuotes(UserID) + "'");
  WorkgroupID = profile->RecordCount() > 0 ? fieldText(*profile, "GroupID") : "0";
  profile->Close();
  return true;
}

bool clsVeskUser::SaveUser(const Ref<Recordset>& rs, const std::string& UserID,
                           const std::string& UserName, const std::string& Alias,
                           const std::string& Password, const std::string& title,
                           const std::string& email) {
  if (!findUser(*rs, UserID)) return false;
  Edit edit(rs);
  setFieldOrNull(*rs, "UserName", UserName);
  setFieldOrNull(*rs, "Alias", Alias);
  setFieldOrNull(*rs, "Password", Password);
  setFieldOrNull(*rs, "Title", title);
  setFieldOrNull(*rs, "Email", email);
  edit.keep();
  rs->Update();
  return true;
}

std::string clsVeskUser::NewUser(const Ref<Recordset>& rs, const std::string& UserName,
                                 const std::string& Alias, const std::string& Password,
                                 const std::string& title, const std::string& email,
                                 const std::string&) {
  savePending(rs);
  Operation operation(oVesk_->DataServer()->Connection());
  Addition addition(rs);
  std::string id = "User" + fieldText(*rs, "ID");
  setFieldOrNull(*rs, "UserID", id);
  setFieldOrNull(*rs, "UserName", UserName);
  setFieldOrNull(*rs, "Alias", Alias);
  setFieldOrNull(*rs, "password", Password);
  setFieldOrNull(*rs, "title", title);
  setFieldOrNull(*rs, "email", email);
  const auto profile = oVesk_->GetRecordset("Select * from VeskProfiles Where UserID = '-1'");
  profile->AddNew();
  profile->Fields("UserID")->Value(id);
  profile->Update();
  profile->Close();
  rs->Update();  // last, so that a failure before it takes the addition back
  operation.commit();
  addition.keep();
  return id;
}

bool clsVeskUser::DeleteUser(const std::string& id) noexcept {
  try {
    const std::string of = " Where UserID = '" + inQuotes(id) + "'";
    Operation operation(oVesk_->DataServer()->Connection());
    for (const char* from :
         {"Delete * from VeskProfiles", "Delete * from Routing", "Delete * from Owners",
          "Delete * from Personals", "Delete * From Users"})
      operation.keep([&] { (void)oVesk_->Execute(from + of); });
    operation.commit();
    return true;
  } catch (const std::exception&) {
    return false;
  }
}

Ref<Recordset> clsVeskUser::GetTheseUsers(const Ref<Recordset>& rs) {
  if (rs->RecordCount() <= 0) return {};
  std::string users;
  for (rs->MoveFirst(); !rs->Eof(); rs->MoveNext())
    users += " or UserID = '" + doubledQuotes(fieldText(*rs, "UserID")) + "'";
  constexpr std::size_t kOr = 4;  // " or "
  return oVesk_->GetRecordset("Select * From Users Where " + users.substr(kOr));
}

Ref<clsUserQuery> clsVeskUser::GetQuery(std::int32_t QueryID) {
  auto query = makeRef<clsUserQuery>();
  query->LoadQuery(oVesk_->MainUser()->DataServer()->Queries()->Open(QueryID));
  return query;
}

Ref<clsUserQuery> clsVeskUser::NewQuery() {
  const auto server = oVesk_->MainUser()->DataServer();
  Operation operation(server->Connection());
  auto query = GetQuery(server->Queries()->Add("<<New Query>>"));
  operation.commit();
  return query;
}

void clsVeskUser::SaveQuery(const Ref<clsUserQuery>& oquery) {
  const auto server = oVesk_->MainUser()->DataServer();
  Operation operation(server->Connection());  // a save may be several updates
  oquery->SaveQuery(server->Queries()->Open(oquery->id()));
  operation.commit();
}

}  // namespace kv
