// SPDX-License-Identifier: Apache-2.0
// Deleting a user with ownerships, places in approval lists and copies.
#pragma once

#include <cstdint>
#include <string>

#include "desk/session.h"

namespace kv::desk {

struct DeletedUser {
  std::string userId;
  std::int32_t copies = 0;         // that he held
  std::int32_t owned = 0;          // documents
  std::int32_t approvalLists = 0;  // that he was on
};

// Raises 5 for the last administrator. Takes the right to delete users; only administrators delete
// one.
DeletedUser deleteUser(const Session& session, const std::string& user);

}  // namespace kv::desk
