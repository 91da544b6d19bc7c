// SPDX-License-Identifier: Apache-2.0
#include "desk/people/user_lookup.h"

#include "classes/rights/rights.h"
#include "common/convert.h"
#include "common/text.h"
#include "common/text_key.h"
#include "data/table_value.h"
#include "desk/refusal.h"

namespace kv::desk {

std::string findUser(const std::shared_ptr<Database>& database, const std::string& user) {
  const auto with = [&](const char* column, const std::string& value) {
    return openOwn(database,
                   std::string("Select UserID From Users Where ") + column + " = '" +
                       doubledQuotes(value) + "'",
                   kReadOnly);
  };
  auto found = with("UserID", user);
  if (found->RecordCount() == 0) {
    found = with("UserName", user);
    if (found->RecordCount() == 0) refuse("There is no user '" + user + "'.");
    if (found->RecordCount() > 1)
      refuse("Several users have the name '" + user + "'; give the user's ID.");
  }
  std::string id = joinText(found->Fields(0)->Value());
  if (id.empty()) refuse("The user '" + user + "' has no identifier.");
  // What is done to an identifier is done to everybody who has it.
  if (with("UserID", id)->RecordCount() > 1)
    refuse("Several users have the identifier '" + id + "'.");
  return id;
}

std::string findAndHoldUser(const Session& session, Transaction& transaction,
                            const std::string& user) {
  const std::string id = findUser(session.database(), user);
  transaction.lock("Users", "UserID", id);
  return findUser(session.database(), id);  // unless somebody was quicker
}

std::string userToLookAt(const Session& session, const std::optional<std::string>& user) {
  const std::string& self = session.profile()->UserID();
  if (!user || equalNoCase(*user, self) || equalNoCase(*user, session.profile()->UserName()))
    return self;
  session.requireRight(urviewuserdetail);
  return findUser(session.database(), *user);
}

bool isUser(const std::shared_ptr<Database>& database, const std::string& name,
            const std::string& except) {
  const std::string quoted = "'" + doubledQuotes(name) + "'";
  const auto rs =
      openOwn(database,
              "Select UserID From Users Where (UserName = " + quoted + " or UserID = " + quoted +
                  ") and UserID <> '" + doubledQuotes(except) + "'",
              kReadOnly);
  return rs->RecordCount() > 0;
}

UserNames::UserNames(const std::shared_ptr<Database>& database) {
  const auto rs = openOwn(database, "Select UserID, UserName From Users", kReadOnly);
  for (; !rs->Eof(); rs->MoveNext())
    names_.emplace(foldKey(joinText(rs->Fields(0)->Value())), rs->Fields(1)->Value());
}

Variant UserNames::of(const Variant& userId) const {
  const auto found = names_.find(foldKey(joinText(userId)));
  return found == names_.end() ? Variant(Null) : found->second;
}

}  // namespace kv::desk
