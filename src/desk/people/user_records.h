// SPDX-License-Identifier: Apache-2.0
// What the changes of users have in common.
#pragma once

#include <string>

#include "desk/session.h"
#include "desk/transaction.h"

namespace kv::desk {

// One change of users at a time, so that names stay unique and an administrator is left.
void lockUsers(Transaction& transaction);

// People log in by their names, and are named by them. Raises 5 for a name that another user has.
void requireFreeName(const Session& session, const std::string& name,
                     const std::string& except = {});

// Lists of documents show names from the profiles.
void setProfileName(const Session& session, const std::string& id, const std::string& name);

// Puts a user into a workgroup, by number or title. Only administrators change who is one, and one
// is left.
void setWorkgroup(const Session& session, const std::string& id, const std::string& workgroup);

[[nodiscard]] bool isAdministrator(const Session& session, const std::string& id);
// Raises 5 when the register has no administrator any more: nobody could give it one again.
void requireAnAdministrator(const Session& session);
// Raises 70 with the reason when the user is an administrator and the one who is logged in is none.
void requireAdministratorFor(const Session& session, const std::string& id, const char* why);

}  // namespace kv::desk
