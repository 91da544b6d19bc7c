// SPDX-License-Identifier: Apache-2.0
#include "desk/register/new_register.h"

#include <optional>

#include "common/convert.h"
#include "common/text.h"
#include "data/table_value.h"
#include "desk/people/change_password.h"
#include "desk/queries/query_lookup.h"
#include "desk/refusal.h"
#include "desk/register/data_source.h"
#include "desk/register/users_file.h"
#include "schema/create_register.h"
#include "user/password.h"

namespace kv::desk {

namespace {

struct Administrator {
  std::int32_t number = 0;
  std::string id;
  std::string name;
  std::string password;  // the hash
};

void addUser(Database& database, const Administrator& user) {
  database.execute("Insert Into Users (ID, UserID, UserName, [Password]) Values (" +
                   std::to_string(user.number) + ", '" + doubledQuotes(user.id) + "', '" +
                   doubledQuotes(user.name) + "', '" + user.password + "')");
}

void addProfile(Database& database, const Administrator& user) {
  database.execute("Insert Into VeskProfiles (UserID, UserName, Administrator) Values ('" +
                   doubledQuotes(user.id) + "', '" + doubledQuotes(user.name) + "', True)");
}

// The first user has the number 0, below every number the register gives out: a register that is
// filled from somewhere else can then keep the numbers its users have there.
Administrator firstUser(const std::string& name, const std::string& password) {
  return {0, "User0", name, Passwords().hash(password)};
}

// Who is known there already becomes administrator of the register if the password is his.
Administrator administratorIn(const std::shared_ptr<Database>& users, const std::string& name,
                              const std::string& password) {
  const auto rs =
      openOwn(users, "Select * From Users Where UserName = '" + doubledQuotes(name) + "'");
  if (rs->RecordCount() > 1)
    deny("there is more than one user of that name in the database of users");
  if (rs->RecordCount() == 1) {
    std::string kept = joinText(rs->Fields("Password")->Value());
    if (!Passwords().verify(kept, password))
      deny("there is a user of that name in the database of users, with another password");
    return {toInt32(rs->Fields("ID")->Value()), joinText(rs->Fields("UserID")->Value()), name,
            std::move(kept)};
  }
  auto user = firstUser(name, password);
  if (openOwn(users, "Select ID From Users")->RecordCount() > 0) {
    user.number = static_cast<std::int32_t>(users->nextNumber(*users->catalog()->find("Users")));
    user.id = "User" + std::to_string(user.number);
  }
  addUser(*users, user);
  return user;
}

}  // namespace

void addQueryForAll(Database& database) {
  database.execute("Insert Into DocumentQuerys (QueryName) Values ('" + std::string(kAllDocuments) +
                   "')");
}

void makeUsers(const std::string& place) { createUserDatabase(dataSource(place))->Close(); }

void makeRegister(const NewRegister& given) {
  requirePassword(given.password);
  Ref<kvConnection> users;
  std::optional<kv::Transaction> adding;
  Administrator administrator;
  if (given.users.empty()) {
    administrator = firstUser(given.administrator, given.password);
  } else {
    users = kvConnection::open(dataSource(given.users));
    adding.emplace(*users->database(), engine::Access::Write);
    administrator = administratorIn(users->database(), given.administrator, given.password);
  }
  createRegister(dataSource(given.place), [&](const std::shared_ptr<Database>& database) {
    // The administrator has a record in the register in any case: who else could repair it when the
    // users cannot be reached?
    addUser(*database, administrator);
    addProfile(*database, administrator);
    addQueryForAll(*database);
    if (!given.users.empty())
      database->execute("Update VeskConfig Set ExternalActionSystem = True, UserDBLocation = '" +
                        doubledQuotes(storedLocation(given.users)) + "'");
  })->Close();
  if (adding) adding->commit();
}

}  // namespace kv::desk
