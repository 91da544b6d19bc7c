#include <iostream>

#include "cli/query_lookup.h"
#include "cli/terminal.h"
#include "cli/verbs.h"
#include "common/text.h"
#include "kvdata/schema/create_register.h"
#include "kvdata/table_value.h"
#include "kvuser/password.h"

namespace kv::cli {

namespace {

// The first user has the number 0, below every number the register gives out: a register that is
// filled from somewhere else can then keep the numbers its users have there.
constexpr const char* kFirstUser = "User0";

void addAdministrator(const std::shared_ptr<Database>& database, const std::string& name,
                      const std::string& password) {
  const std::string quoted = "'" + doubledQuotes(name) + "'";
  database->execute("Insert Into Users (ID, UserID, UserName, [Password]) Values (0, '" +
                    std::string(kFirstUser) + "', " + quoted + ", '" + Passwords().hash(password) +
                    "')");
  database->execute("Insert Into VeskProfiles (UserID, UserName, Administrator) Values ('" +
                    std::string(kFirstUser) + "', " + quoted + ", True)");
}

// The list of documents goes through a saved query, which hides the secured ones from those who may
// not see them; without one there would be nothing to list by.
void addQueryForAll(const std::shared_ptr<Database>& database) {
  database->execute("Insert Into DocumentQuerys (QueryName) Values ('" +
                    std::string(kAllDocuments) + "')");
}

int create(const Options& options) {
  const std::string password =
      newPasswordFor("KVVESK_PASSWORD", "Password for " + options.user + ": ");
  const auto connection =
      createRegister("Data Source=" + quotedValue(options.registerPath), [&](const auto& database) {
        addAdministrator(database, options.user, password);
        addQueryForAll(database);
      });
  connection->Close();
  std::cout << "made " << options.registerPath << " with the administrator " << options.user
            << '\n';
  return kDone;
}

}  // namespace

void addNew(CLI::App& app, Action& chosen) {
  auto* verb = app.add_subcommand("new", "Make an empty register with an administrator");
  const auto options = std::make_shared<Options>();
  verb->add_option("register", options->registerPath, "The file to make; it must not exist")
      ->required();
  verb->add_option(
          "-u,--user", options->user,
          "Name of the administrator; the password comes from KVVESK_PASSWORD or is asked for")
      ->required();
  verb->callback([&chosen, options] { chosen = [options] { return create(*options); }; });
}

}  // namespace kv::cli
