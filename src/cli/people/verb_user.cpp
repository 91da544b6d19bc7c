// SPDX-License-Identifier: Apache-2.0
#include <iostream>

#include "cli/answers/answer_set.h"
#include "cli/answers/detail.h"
#include "cli/people/user_fields.h"
#include "cli/program/terminal.h"
#include "cli/program/verbs.h"
#include "desk/people/add_user.h"
#include "desk/people/delete_user.h"
#include "desk/people/edit_user.h"
#include "desk/people/view_users.h"
#include "desk/refusal.h"

namespace kv::cli {

namespace {

constexpr const char* kKey = "UserID";

void addKey(Command& verb, std::string& user) {
  verb.addOption("name", user, "The user, by ID or name")->required();
}

struct Show : RegisterVerb {
  std::string user;

  void describe(Command& verb) { addKey(verb, user); }
  void run(const Session& session) const {
    writeDetail(std::cout, desk::viewUser(session, user), options.format);
  }
};

struct Add : RegisterVerb {
  UserFields fields;
  bool withoutPassword = false;

  void describe(Command& verb) {
    addUserFields(verb, fields);
    verb.addFlag("--no-password", withoutPassword,
                 "The user cannot log in until somebody gives him a password");
  }
  void check() const { fields.checkNew(); }
  void run(const Session& session) const {
    desk::requireMayAddUser(session, fields);
    std::optional<std::string> password;
    if (!withoutPassword)
      password = newPasswordFor("KVVESK_NEW_PASSWORD", "Password for " + *fields.name + ": ");
    const std::string id = desk::addUser(session, fields, password);
    writeDone(std::cout, "added the user " + id + ", " + *fields.name, {{kKey, id}},
              options.format);
  }
};

struct Edit : RegisterVerb {
  std::string user;
  UserFields fields;

  void describe(Command& verb) {
    addKey(verb, user);
    addUserFields(verb, fields);
  }
  void check() const {
    desk::requireChange(fields.any());
    fields.check();
  }
  void run(const Session& session) const {
    const std::string id = desk::editUser(session, user, fields);
    writeDone(std::cout, "changed the user " + id, {{kKey, id}}, options.format);
  }
};

struct Delete : RegisterVerb {
  std::string user;

  void describe(Command& verb) { addKey(verb, user); }
  void run(const Session& session) const {
    const auto deleted = desk::deleteUser(session, user);
    writeDone(std::cout,
              "deleted the user " + deleted.userId +
                  "; copies held: " + std::to_string(deleted.copies) +
                  ", documents owned: " + std::to_string(deleted.owned) +
                  ", approval lists: " + std::to_string(deleted.approvalLists),
              {{kKey, deleted.userId},
               {"Copies", deleted.copies},
               {"Owned", deleted.owned},
               {"ApprovalLists", deleted.approvalLists}},
              options.format);
  }
};

}  // namespace

void userShow(Command& verb) { declare<Show>(verb); }
void userAdd(Command& verb) { declare<Add>(verb); }
void userEdit(Command& verb) { declare<Edit>(verb); }
void userDelete(Command& verb) { declare<Delete>(verb); }

}  // namespace kv::cli
