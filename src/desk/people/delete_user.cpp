// SPDX-License-Identifier: Apache-2.0
#include "desk/people/delete_user.h"

#include "classes/rights/rights.h"
#include "common/convert.h"
#include "common/error.h"
#include "common/text.h"
#include "data/table_value.h"
#include "desk/people/user_lookup.h"
#include "desk/people/user_records.h"

namespace kv::desk {

DeletedUser deleteUser(const Session& session, const std::string& user) {
  session.requireRight(urDeleteUser);
  Transaction transaction(session);
  lockUsers(transaction);
  const std::string id = findUser(session.database(), user);
  const auto rows = [&](const char* table) {
    return toInt32(openOwn(session.database(), std::string("Select Count(*) From ") + table +
                                                   " Where UserID = '" + doubledQuotes(id) + "'")
                       ->Fields(0)
                       ->Value());
  };
  DeletedUser deleted{.userId = id,
                      .copies = rows("Personals"),
                      .owned = rows("Owners"),
                      .approvalLists = rows("Routing")};
  requireAdministratorFor(session, id, "only administrators may delete an administrator");
  const bool before = isAdministrator(session, id);
  if (!session->User()->DeleteUser(doubledQuotes(id)))
    throw Error(kEngineFailure, "kvvesk", "The user '" + id + "' could not be deleted.");
  if (before) requireAnAdministrator(session);
  transaction.commit();
  return deleted;
}

}  // namespace kv::desk
