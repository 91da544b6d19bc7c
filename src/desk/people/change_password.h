// SPDX-License-Identifier: Apache-2.0
// Giving a user a new password.
#pragma once

#include <string>

#include "desk/session.h"

namespace kv::desk {

// Raises WrongInput for an empty password, which would let nobody in.
void requirePassword(const std::string& password);

// The ID of a user, by ID or name, whose password the logged-in user may change: for whoever asks
// for the new one only then. Takes the right to change one's own password or that of others; whose
// password an administrator has, only administrators change.
[[nodiscard]] std::string requireMayChangePassword(const Session& session, const std::string& user);

// Returns the user's ID.
std::string changePassword(const Session& session, const std::string& user,
                           const std::string& password);

}  // namespace kv::desk
