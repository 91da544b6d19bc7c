// SPDX-License-Identifier: Apache-2.0
// Changing a user's fields.
#pragma once

#include <string>

#include "desk/people/user_fields.h"
#include "desk/session.h"

namespace kv::desk {

// Writes the fields given, after testing the right for each; returns the user's ID. Administrators,
// and only they, make and unmake administrators, themselves too; the last one stays.
std::string editUser(const Session& session, const std::string& user, const UserFields& fields);

}  // namespace kv::desk
