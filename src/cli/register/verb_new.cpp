// SPDX-License-Identifier: Apache-2.0
#include <iostream>

#include "cli/program/terminal.h"
#include "cli/program/verbs.h"
#include "desk/register/new_register.h"

namespace kv::cli {

namespace {

int createUsers(const std::string& place) {
  desk::makeUsers(place);
  std::cout << "made " << place << " for users and actions\n";
  return kDone;
}

int create(const Options& options, const std::string& usersPlace) {
  desk::makeRegister(
      {.place = options.registerPath,
       .administrator = options.user,
       .password = newPasswordFor("KVVESK_PASSWORD", "Password for " + options.user + ": "),
       .users = usersPlace});
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
