// SPDX-License-Identifier: Apache-2.0
#include "desk/people/change_password.h"

#include "classes/rights/rights.h"
#include "common/text.h"
#include "desk/people/user_lookup.h"
#include "desk/people/user_records.h"
#include "desk/refusal.h"

namespace kv::desk {

void requirePassword(const std::string& password) {
  if (password.empty()) throw WrongInput("an empty password would let nobody in");
}

std::string requireMayChangePassword(const Session& session, const std::string& user) {
  std::string id = findUser(session.database(), user);
  if (equalNoCase(id, session.profile()->UserID())) {
    session.requireRight(urEditOwnUserPassword);
  } else {
    session.requireRight(urEditUserPassword);
    // Who knows an administrator's password is one.
    requireAdministratorFor(session, id,
                            "only administrators may change the password of an administrator");
  }
  return id;
}

std::string changePassword(const Session& session, const std::string& user,
                           const std::string& password) {
  requirePassword(password);
  std::string id = requireMayChangePassword(session, user);
  if (!session->MainUser()->setPassword(id, password)) raise(kRowDeleted);
  return id;
}

}  // namespace kv::desk
