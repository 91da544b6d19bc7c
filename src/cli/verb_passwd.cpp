#include <iostream>

#include "cli/terminal.h"
#include "cli/verbs.h"
#include "common/convert.h"
#include "common/error.h"
#include "common/text.h"
#include "kvdata/table_value.h"

namespace kv::cli {

namespace {

constexpr std::int16_t kEditUserPassword = 73;
constexpr std::int16_t kEditOwnPassword = 133;

// The ID of the user with this ID or, when there is none, with this name. A name that several users
// have is refused: which of them was meant is not for us to guess.
std::string findUser(const std::shared_ptr<Database>& database, const std::string& user) {
  const std::string quoted = "'" + doubledQuotes(user) + "'";
  const auto byId = openOwn(database, "Select UserID From Users Where UserID = " + quoted);
  if (byId->RecordCount() > 0) return joinText(byId->Fields(0)->Value());
  const auto byName = openOwn(database, "Select UserID From Users Where UserName = " + quoted);
  if (byName->RecordCount() == 1) return joinText(byName->Fields(0)->Value());
  throw Error(kInvalidCall, "kvvesk",
              byName->RecordCount() == 0
                  ? "There is no user '" + user + "'."
                  : "Several users have the name '" + user + "'; give the user's ID.");
}

int change(const Options& options, const std::string& user) {
  const Session session(options);
  const auto& database = session->DataServer()->Connection()->database();
  const std::string id = findUser(database, user);
  if (equalNoCase(id, session.profile()->UserID())) {
    session.requireRight(kEditOwnPassword, "Change their own password");
  } else {
    session.requireRight(kEditUserPassword, "Edit the User Password Field");
  }
  const std::string password =
      newPasswordFor("KVVESK_NEW_PASSWORD", "New password for " + user + ": ");
  session->MainUser()->setPassword(id, password);
  std::cout << "changed the password of " << id << '\n';
  return kDone;
}

}  // namespace

void addPasswd(CLI::App& app, Action& chosen) {
  auto* verb = app.add_subcommand(
      "passwd", "Give a user a new password, from KVVESK_NEW_PASSWORD or the terminal");
  const auto options = std::make_shared<Options>();
  const auto user = std::make_shared<std::string>();
  addCommon(*verb, *options);
  verb->add_option("name", *user, "The user, by ID or name")->required();
  verb->callback(
      [&chosen, options, user] { chosen = [options, user] { return change(*options, *user); }; });
}

}  // namespace kv::cli
