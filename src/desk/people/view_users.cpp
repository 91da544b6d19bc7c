// SPDX-License-Identifier: Apache-2.0
#include "desk/people/view_users.h"

#include "classes/rights/rights.h"
#include "common/convert.h"
#include "common/text.h"
#include "data/table_value.h"
#include "desk/column_list.h"
#include "desk/people/user_lookup.h"
#include "desk/people/workgroup.h"
#include "desk/queries/query_lookup.h"
#include "desk/refusal.h"

namespace kv::desk {

namespace {

constexpr const char* kTable = "Users";
constexpr const char* kPassword = "Password";
constexpr std::int32_t kEverybody = -1;

// A user's row without the password, of which no more is told than whether there is one, and the
// workgroup that stands in the profile.
Ref<Recordset> detailOf(const Session& session, const std::string& id) {
  const auto row = session->User()->Record(doubledQuotes(id));
  const Variant group = tableValue(session.database(), "VeskProfiles", "GroupID",
                                   "UserID = '" + doubledQuotes(id) + "'");
  auto detail = Recordset::create();
  for (std::int32_t i = 0; i < row->Fields().Count(); ++i) {
    const auto field = row->Fields(i);
    if (equalNoCase(field->Name(), kPassword))
      detail->Fields().Append("HasPassword", kTypeBoolean, 0);
    else
      detail->Fields().Append(field->Name(), field->Type(), field->DefinedSize(),
                              field->Attributes());
  }
  detail->Fields().Append("WorkgroupID", kTypeInteger, 0);
  detail->Fields().Append("Workgroup", kTypeLongVarWChar, 0);
  detail->Open();
  detail->AddNew();
  for (std::int32_t i = 0; i < row->Fields().Count(); ++i) {
    const auto field = row->Fields(i);
    const bool secret = equalNoCase(field->Name(), kPassword);
    detail->Fields(i)->Value(secret ? Variant(!joinText(field->Value()).empty()) : field->Value());
  }
  detail->Fields("WorkgroupID")->Value(group.isEmpty() ? Variant(Null) : group);
  detail->Fields("Workgroup")
      ->Value(group.isEmpty() ? Variant(Null) : workgroupTitle(session, toInt32(group)));
  detail->Update();
  return detail;
}

std::string allFields(const Database& database) {
  const auto keeper = database.keeperOf(kTable);
  std::string list;
  for (const auto& column : (keeper ? *keeper : database).catalog()->find(kTable)->columns)
    if (column.name != kPassword) list += (list.empty() ? "" : ", ") + column.name;
  return list;
}

// Refuses a list of columns, in brackets, that has the passwords in it. An order by them would tell
// something of them too.
std::string withoutSecrets(std::string list) {
  if (list.find(std::string("[") + kPassword + "]") != std::string::npos)
    deny("passwords are not listed");
  return list;
}

}  // namespace

Detail viewUser(const Session& session, const std::string& user) {
  session.requireRight(urviewuserdetail);
  const std::string id = findUser(session.database(), user);
  return {.row = detailOf(session, id), .labels = labelsIn(session.database(), "UserConfig")};
}

Ref<Recordset> listUsers(const Session& session, const UserListing& listing) {
  session.requireRight(urVIEWUSERLIST);
  const auto& database = *session.database();
  const bool all = trimmed(listing.fields) == "*";
  const std::string fields =
      withoutSecrets(selectList(database, kTable, all ? allFields(database) : listing.fields));
  const std::string sort = withoutSecrets(sortList(database, kTable, listing.sort));
  const std::int32_t query =
      listing.query ? findQuery(session, *listing.query, kUserQueries) : kEverybody;
  return session->User()->Records(query, sort, {}, fields);
}

}  // namespace kv::desk
