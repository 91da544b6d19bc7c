// SPDX-License-Identifier: Apache-2.0
// Looking at users. Passwords are kept as hashes and are shown to nobody.
#pragma once

#include <optional>
#include <string>

#include "desk/register/field_labels.h"
#include "desk/session.h"

namespace kv::desk {

// A user's fields, whether there is a password, and the workgroup. Takes the right to view user
// details.
[[nodiscard]] Detail viewUser(const Session& session, const std::string& user);

struct UserListing {
  std::optional<std::string> query;  // by number or name; everybody without it
  // Columns separated by commas, each with asc or desc behind it.
  std::string sort = "UserName";
  // Columns separated by commas; * for all.
  std::string fields = "UserID, UserName, Alias, Title, Email";
};

// Takes the right to view the list of users. Raises 70 where passwords are asked for, as an order
// by them too.
[[nodiscard]] Ref<Recordset> listUsers(const Session& session, const UserListing& listing);

}  // namespace kv::desk
