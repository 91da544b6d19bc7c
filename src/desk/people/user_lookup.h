// SPDX-License-Identifier: Apache-2.0
// Users as people name them.
#pragma once

#include <map>
#include <memory>
#include <optional>
#include <string>

#include "common/variant.h"
#include "desk/session.h"
#include "desk/transaction.h"
#include "recordset/database.h"

namespace kv::desk {

// The ID of the user with this ID or, when there is none, with this name. Raises 5 when there is
// none, and for a name or an ID that several users have: which of them was meant is not for us to
// guess.
[[nodiscard]] std::string findUser(const std::shared_ptr<Database>& database,
                                   const std::string& user);

// The same, and until the transaction ends nobody deletes the user, whom what is written would then
// name in vain. Users are held before manuals, and those before documents, so that no two
// transactions wait for each other.
[[nodiscard]] std::string findAndHoldUser(const Session& session, Transaction& transaction,
                                          const std::string& user);

// The user whose things are listed: the logged-in one when none is named, who needs no right for
// it, by ID or name either. Raises 70 for anybody else without the right to look at users.
[[nodiscard]] std::string userToLookAt(const Session& session,
                                       const std::optional<std::string>& user);

// Whether another user than the one with the ID `except` goes by this name, or by this ID.
[[nodiscard]] bool isUser(const std::shared_ptr<Database>& database, const std::string& name,
                          const std::string& except = {});

// The names of all users, for lists that have their IDs.
class UserNames {
 public:
  explicit UserNames(const std::shared_ptr<Database>& database);
  // Null for an ID that nobody has.
  [[nodiscard]] Variant of(const Variant& userId) const;

 private:
  std::map<std::string, Variant> names_;  // by the ID as it is compared
};

}  // namespace kv::desk
