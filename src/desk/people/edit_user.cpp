// SPDX-License-Identifier: Apache-2.0
#include "desk/people/edit_user.h"

#include "classes/rights/rights.h"
#include "common/text.h"
#include "desk/people/user_lookup.h"
#include "desk/people/user_records.h"
#include "desk/refusal.h"

namespace kv::desk {

namespace {

void requireRights(const Session& session, const UserFields& fields) {
  if (fields.name) session.requireRight(urEditUserName);
  if (fields.alias) session.requireRight(urEditUserAlais);
  if (fields.title) session.requireRight(urEditUserTitle);
  if (fields.email) session.requireRight(uredituseremail);
  if (fields.workgroup) session.requireRight(urChangeUsersWorkGroup);
}

}  // namespace

std::string editUser(const Session& session, const std::string& user, const UserFields& fields) {
  requireChange(fields.any());
  fields.check();
  Transaction transaction(session);
  requireRights(session, fields);
  lockUsers(transaction);
  std::string id = findUser(session.database(), user);
  if (fields.name) requireFreeName(session, *fields.name, id);
  const std::string joined = doubledQuotes(id);
  const auto row = session->User()->Record(joined);
  std::string name, alias, password, title, email, group;
  if (!session->User()->LoadUser(row, joined, name, alias, password, title, email, group) ||
      !session->User()->SaveUser(row, joined, fields.name.value_or(name),
                                 fields.alias.value_or(alias), password,
                                 fields.title.value_or(title), fields.email.value_or(email)))
    raise(kRowDeleted);
  if (fields.name) setProfileName(session, id, *fields.name);
  if (fields.workgroup) setWorkgroup(session, id, *fields.workgroup);
  transaction.commit();
  return id;
}

}  // namespace kv::desk
