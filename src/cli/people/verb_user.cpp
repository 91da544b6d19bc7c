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

int show(const Options& options, const std::string& user) {
  const Session session(options);
  writeDetail(std::cout, desk::viewUser(session, user), options.format);
  return kDone;
}

int add(const Options& options, const UserFields& fields, bool withoutPassword) {
  fields.checkNew();
  const Session session(options);
  desk::requireMayAddUser(session, fields);
  std::optional<std::string> password;
  if (!withoutPassword)
    password = newPasswordFor("KVVESK_NEW_PASSWORD", "Password for " + *fields.name + ": ");
  const std::string id = desk::addUser(session, fields, password);
  writeDone(std::cout, "added the user " + id + ", " + *fields.name, {{kKey, id}}, options.format);
  return kDone;
}

int edit(const Options& options, const std::string& user, const UserFields& fields) {
  desk::requireChange(fields.any());
  fields.check();
  const Session session(options);
  const std::string id = desk::editUser(session, user, fields);
  writeDone(std::cout, "changed the user " + id, {{kKey, id}}, options.format);
  return kDone;
}

int remove(const Options& options, const std::string& user) {
  const Session session(options);
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
  return kDone;
}

void addKey(Command& verb, std::string& user) {
  verb.addOption("name", user, "The user, by ID or name")->required();
}

struct Show : RegisterVerb {
  std::string user;

  void describe(Command& verb) { addKey(verb, user); }
  [[nodiscard]] int run() const { return show(options, user); }
};

struct Add : RegisterVerb {
  UserFields fields;
  bool withoutPassword = false;

  void describe(Command& verb) {
    addUserFields(verb, fields);
    verb.addFlag("--no-password", withoutPassword,
                 "The user cannot log in until somebody gives him a password");
  }
  [[nodiscard]] int run() const { return add(options, fields, withoutPassword); }
};

struct Edit : RegisterVerb {
  std::string user;
  UserFields fields;

  void describe(Command& verb) {
    addKey(verb, user);
    addUserFields(verb, fields);
  }
  [[nodiscard]] int run() const { return edit(options, user, fields); }
};

struct Delete : RegisterVerb {
  std::string user;

  void describe(Command& verb) { addKey(verb, user); }
  [[nodiscard]] int run() const { return remove(options, user); }
};

}  // namespace

void userShow(Command& verb) { declare<Show>(verb); }
void userAdd(Command& verb) { declare<Add>(verb); }
void userEdit(Command& verb) { declare<Edit>(verb); }
void userDelete(Command& verb) { declare<Delete>(verb); }

}  // namespace kv::cli
