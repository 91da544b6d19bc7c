#include "cli/people/user_edit.h"

#include "cli/people/user_lookup.h"
#include "cli/people/workgroup.h"
#include "cli/program/given_options.h"
#include "cli/program/terminal.h"
#include "common/convert.h"
#include "common/error.h"
#include "common/text.h"
#include "kvdata/recordset/text_field.h"
#include "kvdata/table_value.h"
#include "rights/rights.h"

namespace kv::cli {

namespace {

constexpr const char* kProfiles = "VeskProfiles";

[[noreturn]] void refuse(const std::string& why) { throw Error(kInvalidCall, "kvvesk", why); }

std::string ofUser(const std::string& id) { return "UserID = '" + doubledQuotes(id) + "'"; }

bool isAdministrator(const Session& session, const std::string& id) {
  bool administrator = false;
  (void)session->MainUser()->RightsOf(id, administrator);
  return administrator;
}

// People log in by their names, and are named by them.
void requireFreeName(const Session& session, const std::string& name,
                     const std::string& except = {}) {
  if (isUser(session.database(), name, except)) refuse("There is a user '" + name + "' already.");
}

// Who comes from another register that has the same users has no profile here yet.
void ensureProfile(const Session& session, const std::string& id) {
  const auto rs =
      openOwn(session.database(), "Select UserID, UserName From VeskProfiles Where " + ofUser(id));
  if (!rs->Eof()) return;
  rs->AddNew();
  rs->Fields("UserID")->Value(id);
  rs->Fields("UserName")
      ->Value(textOrNull(joinText(session->MainUser()->UserValue(id, "UserName"))));
  rs->Update();
}

// Lists of documents show names from the profiles.
void setProfileName(const Session& session, const std::string& id, const std::string& name) {
  const auto rs =
      openOwn(session.database(), "Select UserName From VeskProfiles Where " + ofUser(id));
  if (rs->Eof()) return;
  rs->Fields(0)->Value(name);
  rs->Update();
}

// Nobody could give the register an administrator again.
void requireAnAdministrator(const Session& session) {
  const auto rs =
      openOwn(session.database(),
              "Select UserID From VeskProfiles Where Administrator = True or GroupID = " +
                  std::to_string(kSuperUsers),
              kReadOnly);
  if (rs->RecordCount() == 0) refuse("This would leave the register without an administrator.");
}

void setWorkgroup(const Session& session, const std::string& id, const std::string& given) {
  ensureProfile(session, id);
  const std::int32_t workgroup = findWorkgroup(session, given);
  const bool before = isAdministrator(session, id);
  if (before || workgroup == kSuperUsers)
    session.requireAdministrator("only administrators may change who is one");
  storeTableValue(session.database(), kProfiles, "GroupID", workgroup, ofUser(id));
  // A mark in the profile makes an administrator as well. Who is put elsewhere is none any more,
  // whichever of the two it was.
  if (before && workgroup != kSuperUsers)
    storeTableValue(session.database(), kProfiles, "Administrator", false, ofUser(id));
  if (before) requireAnAdministrator(session);
}

Ref<Recordset> noUsers(const Session& session) {
  return session->User()->Records(0, {}, "Select * From Users Where ID = -1");
}

std::string addOnce(const Session& session, const UserFields& fields, const std::string& password) {
  std::string id =
      session->User()->NewUser(noUsers(session), *fields.name, fields.alias.value_or(""), "",
                               fields.title.value_or(""), fields.email.value_or(""), "");
  setProfileName(session, id, *fields.name);
  // Never in clear text, not even until the first log-in.
  if (!password.empty()) session->MainUser()->setPassword(id, password);
  if (fields.workgroup) setWorkgroup(session, id, *fields.workgroup);
  return id;
}

}  // namespace

void UserFields::check() const {
  if (name && trimmed(*name).empty()) throw UsageError("a user needs a name");
  if (workgroup && workgroup->empty()) throw UsageError("a user needs a workgroup; 0 is the least");
}

void addUserFields(Command& verb, UserFields& fields) {
  addText(verb, "--name", fields.name, "The name, by which the user logs in");
  addText(verb, "--alias", fields.alias, "The alias");
  addText(verb, "--title", fields.title, "The title");
  addText(verb, "--email", fields.email, "The e-mail address");
  addText(verb, "--workgroup", fields.workgroup,
          "The workgroup, by number or title; -1 makes an administrator, any other ends being one")
      ->typeName("GROUP");
}

void lockUsers(ClientTransaction& transaction) {
  transaction.lock("Users");
  transaction.lock(kProfiles);
}

std::string addUser(const Session& session, const UserFields& fields, const std::string& password) {
  for (;;) {
    {
      ClientTransaction transaction(session);
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

std::string editUser(const Session& session, ClientTransaction& transaction,
                     const std::string& user, const UserFields& fields) {
  if (fields.name) session.requireRight(urEditUserName);
  if (fields.alias) session.requireRight(urEditUserAlais);
  if (fields.title) session.requireRight(urEditUserTitle);
  if (fields.email) session.requireRight(uredituseremail);
  if (fields.workgroup) session.requireRight(urChangeUsersWorkGroup);
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
  return id;
}

void deleteUser(const Session& session, const std::string& id) {
  requireAdministratorFor(session, id, "only administrators may delete an administrator");
  const bool before = isAdministrator(session, id);
  if (!session->User()->DeleteUser(doubledQuotes(id)))
    throw Error(kEngineFailure, "kvvesk", "The user '" + id + "' could not be deleted.");
  if (before) requireAnAdministrator(session);
}

void requireAdministratorFor(const Session& session, const std::string& id, const char* why) {
  if (isAdministrator(session, id)) session.requireAdministrator(why);
}

}  // namespace kv::cli
