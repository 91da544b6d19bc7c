#include <iostream>
#include <optional>

#include "cli/program/terminal.h"
#include "cli/program/verbs.h"
#include "cli/queries/query_lookup.h"
#include "cli/register/users_file.h"
#include "common/convert.h"
#include "common/text.h"
#include "kvdata/schema/create_register.h"
#include "kvdata/table_value.h"
#include "kvuser/password.h"

namespace kv::cli {

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

// The list of documents goes through a saved query, which hides the secured ones from those who may
// not see them; without one there would be nothing to list by.
void addQueryForAll(Database& database) {
  database.execute("Insert Into DocumentQuerys (QueryName) Values ('" + std::string(kAllDocuments) +
                   "')");
}

std::string dataSource(const std::string& place) { return "Data Source=" + quotedValue(place); }

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

int createUsers(const std::string& place) {
  createUserDatabase(dataSource(place))->Close();
  std::cout << "made " << place << " for users and actions\n";
  return kDone;
}

int create(const Options& options, const std::string& usersPlace) {
  const std::string password =
      newPasswordFor("KVVESK_PASSWORD", "Password for " + options.user + ": ");
  Ref<kvConnection> users;
  std::optional<Transaction> adding;
  Administrator administrator;
  if (usersPlace.empty()) {
    administrator = firstUser(options.user, password);
  } else {
    users = kvConnection::open(dataSource(usersPlace));
    adding.emplace(*users->database(), engine::Access::Write);
    administrator = administratorIn(users->database(), options.user, password);
  }
  createRegister(dataSource(options.registerPath), [&](const std::shared_ptr<Database>& database) {
    // The administrator has a record in the register in any case: who else could repair it when the
    // users cannot be reached?
    addUser(*database, administrator);
    addProfile(*database, administrator);
    addQueryForAll(*database);
    if (!usersPlace.empty())
      database->execute("Update VeskConfig Set ExternalActionSystem = True, UserDBLocation = '" +
                        doubledQuotes(storedLocation(usersPlace)) + "'");
  })->Close();
  if (adding) adding->commit();
  std::cout << "made " << options.registerPath << " with the administrator " << options.user;
  if (!usersPlace.empty()) std::cout << ", users and actions in " << usersPlace;
  std::cout << '\n';
  return kDone;
}

struct New {
  Options options;
  std::string users;

  void describe(Command& verb) {
    auto* path =
        verb.addOption("register", options.registerPath, "The file to make; it must not exist");
    auto* user = verb.addOption(
        "-u,--user", options.user,
        "Name of the administrator; the password comes from KVVESK_PASSWORD or is asked for");
    path->needs(user);
    user->needs(path);
    verb.addOption("--users", users,
                   "Keep users and actions in this file, which several registers may share. "
                   "Without a register to make: make this file");
  }
  [[nodiscard]] int run() const {
    if (!options.registerPath.empty()) return create(options, users);
    if (users.empty()) throw UsageError("register or --users is required");
    return createUsers(users);
  }
};

}  // namespace

void registerNew(Command& verb) { declare<New>(verb); }

}  // namespace kv::cli
