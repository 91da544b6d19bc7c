// SPDX-License-Identifier: Apache-2.0
// Adding a user.
#pragma once

#include <optional>
#include <string>

#include "desk/people/user_fields.h"
#include "desk/session.h"

namespace kv::desk {

// Raises 70 when the logged-in user may not add this one: for whoever asks for the password only
// then. Takes the right to create users, and with a workgroup the one to change those of users.
void requireMayAddUser(const Session& session, const UserFields& fields);

// Adds a user with a name that nobody has and returns the new user's ID. Without a password nobody
// logs in by that name. Only administrators make administrators.
[[nodiscard]] std::string addUser(const Session& session, const UserFields& fields,
                                  const std::optional<std::string>& password);

}  // namespace kv::desk
