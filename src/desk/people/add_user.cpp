// SPDX-License-Identifier: Apache-2.0
#include "desk/people/add_user.h"

#include "classes/rights/rights.h"
#include "common/text.h"
#include "desk/people/change_password.h"
#include "desk/people/user_records.h"
#include "desk/refusal.h"

namespace kv::desk {

namespace {

Ref<Recordset> noUsers(const Session& session) {
  return session->User()->Records(0, {}, "Select * From Users Where ID = -1");
}

std::string addOnce(const Session& session, const UserFields& fields,
                    const std::optional<std::string>& password) {
  std::string id =
      session->User()->NewUser(noUsers(session), *fields.name, fields.alias.value_or(""), "",
                               fields.title.value_or(""), fields.email.value_or(""), "");
  setProfileName(session, id, *fields.name);
  // Never in clear text, not even until the first log-in.
  if (password) session->MainUser()->setPassword(id, *password);
  if (fields.workgroup) setWorkgroup(session, id, *fields.workgroup);
  return id;
}

}  // namespace

void requireMayAddUser(const Session& session, const UserFields& fields) {
  session.requireRight(urCreateNewUser);
  if (fields.workgroup) session.requireRight(urChangeUsersWorkGroup);
}

std::string addUser(const Session& session, const UserFields& fields,
                    const std::optional<std::string>& password) {
  fields.checkNew();
  if (password) requirePassword(*password);
  requireMayAddUser(session, fields);
  for (;;) {
    {
      Transaction transaction(session);
      lockUsers(transaction);
      requireFreeName(session, *fields.name);
      std::string id = addOnce(session, fields, password);
      if (session->User()->Record(doubledQuotes(id))->RecordCount() == 1) {
        transaction.commit();
        return id;
      }
    }
    // Identifiers are made of the row's number. In a register from elsewhere somebody may have that
    // identifier under another number; two of one identifier would share rights and copies, so the
    // number is let pass.
    const auto rs = noUsers(session);
    rs->AddNew();
    rs->CancelUpdate();
  }
}

}  // namespace kv::desk
