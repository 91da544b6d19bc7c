// Adding, changing and deleting users.
#pragma once

#include <optional>
#include <string>
#include "cli/program/command.h"

#include "cli/program/client_transaction.h"
#include "cli/program/options.h"

namespace kv::cli {

// Fields of a user as the command line gives them, or leaves them out.
struct UserFields {
  std::optional<std::string> name;
  std::optional<std::string> alias;
  std::optional<std::string> title;
  std::optional<std::string> email;
  std::optional<std::string> workgroup;

  [[nodiscard]] bool any() const { return name || alias || title || email || workgroup; }
  // Raises UsageError for an empty name or workgroup.
  void check() const;
};

void addUserFields(Command& verb, UserFields& fields);

// One change of users at a time, so that names stay unique and an administrator is left.
void lockUsers(ClientTransaction& transaction);

// Adds a user with a name that nobody has, with a password unless it is empty, and returns the new
// user's ID. Whether the logged-in user may has been tested, but for making administrators.
[[nodiscard]] std::string addUser(const Session& session, const UserFields& fields,
                                  const std::string& password);

// Writes the fields given, after testing the right for each; returns the user's ID.
[[nodiscard]] std::string editUser(const Session& session, ClientTransaction& transaction,
                                   const std::string& user, const UserFields& fields);

// Deletes a user, never the last administrator.
void deleteUser(const Session& session, const std::string& id);

// Raises 70 with the reason when the user is an administrator and the one who is logged in is none.
void requireAdministratorFor(const Session& session, const std::string& id, const char* why);

}  // namespace kv::cli
