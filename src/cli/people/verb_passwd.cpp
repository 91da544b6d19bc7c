// SPDX-License-Identifier: Apache-2.0
#include <iostream>

#include "cli/answers/answer_set.h"
#include "cli/program/terminal.h"
#include "cli/program/verbs.h"
#include "desk/people/change_password.h"

namespace kv::cli {

namespace {

struct Password : RegisterVerb {
  std::string user;

  void describe(Command& verb) {
    verb.addOption("name", user, "The user, by ID or name")->required();
  }
  void run(const Session& session) const {
    const std::string id = desk::requireMayChangePassword(session, user);
    desk::changePassword(session, id,
                         newPasswordFor("KVVESK_NEW_PASSWORD", "New password for " + user + ": "));
    writeDone(std::cout, "changed the password of " + id, {{"UserID", id}}, options.format);
  }
};

}  // namespace

void userPassword(Command& verb) { declare<Password>(verb); }

}  // namespace kv::cli
