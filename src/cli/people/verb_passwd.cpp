#include <iostream>

#include "cli/answers/answer_set.h"
#include "cli/people/user_edit.h"
#include "cli/people/user_lookup.h"
#include "cli/program/terminal.h"
#include "cli/program/verbs.h"
#include "common/error.h"
#include "common/text.h"
#include "rights/rights.h"

namespace kv::cli {

namespace {

int change(const Options& options, const std::string& user) {
  const Session session(options);
  const std::string id = findUser(session.database(), user);
  if (equalNoCase(id, session.profile()->UserID())) {
    session.requireRight(urEditOwnUserPassword);
  } else {
    session.requireRight(urEditUserPassword);
    // Who knows an administrator's password is one.
    requireAdministratorFor(session, id,
                            "only administrators may change the password of an administrator");
  }
  const std::string password =
      newPasswordFor("KVVESK_NEW_PASSWORD", "New password for " + user + ": ");
  if (!session->MainUser()->setPassword(id, password)) raise(kRowDeleted);
  writeDone(std::cout, "changed the password of " + id, {{"UserID", id}}, options.format);
  return kDone;
}

struct Password : RegisterVerb {
  std::string user;

  void describe(Command& verb) {
    verb.addOption("name", user, "The user, by ID or name")->required();
  }
  [[nodiscard]] int run() const { return change(options, user); }
};

}  // namespace

void userPassword(Command& verb) { declare<Password>(verb); }

}  // namespace kv::cli
