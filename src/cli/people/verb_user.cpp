#include <iostream>

#include "cli/answers/answer_set.h"
#include "cli/answers/detail.h"
#include "cli/people/user_edit.h"
#include "cli/people/user_lookup.h"
#include "cli/people/workgroup.h"
#include "cli/program/client_transaction.h"
#include "cli/program/terminal.h"
#include "cli/program/verbs.h"
#include "common/convert.h"
#include "common/error.h"
#include "common/text.h"
#include "kvdata/recordset/text_field.h"
#include "kvdata/table_value.h"
#include "rights/rights.h"

namespace kv::cli {

namespace {

constexpr const char* kKey = "UserID";
constexpr const char* kPassword = "Password";

// A user's row without the password, of which no more is told than whether there is one, and the
// workgroup that stands in the profile.
Ref<Recordset> detailOf(const Session& session, const std::string& id) {
  const auto row = session->User()->Record(doubledQuotes(id));
  const Variant group = tableValue(session.database(), "VeskProfiles", "GroupID",
                                   "UserID = '" + doubledQuotes(id) + "'");
  auto detail = Recordset::create();
  for (std::int32_t i = 0; i < row->Fields().Count(); ++i) {
    const auto field = row->Fields(i);
    if (equalNoCase(field->Name(), kPassword))
      detail->Fields().Append("HasPassword", kTypeBoolean, 0);
    else
      detail->Fields().Append(field->Name(), field->Type(), field->DefinedSize(),
                              field->Attributes());
  }
  detail->Fields().Append("WorkgroupID", kTypeInteger, 0);
  detail->Fields().Append("Workgroup", kTypeLongVarWChar, 0);
  detail->Open();
  detail->AddNew();
  for (std::int32_t i = 0; i < row->Fields().Count(); ++i) {
    const auto field = row->Fields(i);
    const bool secret = equalNoCase(field->Name(), kPassword);
    detail->Fields(i)->Value(secret ? Variant(!joinText(field->Value()).empty()) : field->Value());
  }
  detail->Fields("WorkgroupID")->Value(group.isEmpty() ? Variant(Null) : group);
  detail->Fields("Workgroup")
      ->Value(group.isEmpty() ? Variant(Null) : workgroupTitle(session, toInt32(group)));
  detail->Update();
  return detail;
}

int show(const Options& options, const std::string& user) {
  const Session session(options);
  session.requireRight(urviewuserdetail);
  const std::string id = findUser(session.database(), user);
  writeDetail(std::cout, *detailOf(session, id), options.format,
              labelsIn(session.database(), "UserConfig"));
  return kDone;
}

int add(const Options& options, const UserFields& fields, bool withoutPassword) {
  if (!fields.name) throw UsageError("a user needs a name: give --name");
  fields.check();
  const Session session(options);
  session.requireRight(urCreateNewUser);
  if (fields.workgroup) session.requireRight(urChangeUsersWorkGroup);
  const std::string password =
      withoutPassword
          ? std::string()
          : newPasswordFor("KVVESK_NEW_PASSWORD", "Password for " + *fields.name + ": ");
  const std::string id = addUser(session, fields, password);
  writeDone(std::cout, "added the user " + id + ", " + *fields.name, {{kKey, id}}, options.format);
  return kDone;
}

int edit(const Options& options, const std::string& user, const UserFields& fields) {
  if (!fields.any()) throw UsageError("nothing to change: give at least one field");
  fields.check();
  const Session session(options);
  ClientTransaction transaction(session);
  const std::string id = editUser(session, transaction, user, fields);
  transaction.commit();
  writeDone(std::cout, "changed the user " + id, {{kKey, id}}, options.format);
  return kDone;
}

int remove(const Options& options, const std::string& user) {
  const Session session(options);
  session.requireRight(urDeleteUser);
  ClientTransaction transaction(session);
  lockUsers(transaction);
  const std::string id = findUser(session.database(), user);
  const auto rows = [&](const char* table) {
    return toInt32(openOwn(session.database(), std::string("Select Count(*) From ") + table +
                                                   " Where UserID = '" + doubledQuotes(id) + "'")
                       ->Fields(0)
                       ->Value());
  };
  const std::int32_t copies = rows("Personals");
  const std::int32_t owned = rows("Owners");
  const std::int32_t approved = rows("Routing");
  deleteUser(session, id);
  transaction.commit();
  writeDone(std::cout,
            "deleted the user " + id + "; copies held: " + std::to_string(copies) +
                ", documents owned: " + std::to_string(owned) +
                ", approval lists: " + std::to_string(approved),
            {{kKey, id}, {"Copies", copies}, {"Owned", owned}, {"ApprovalLists", approved}},
            options.format);
  return kDone;
}

void addKey(Command& verb, std::string& user) {
  verb.addOption("name", user, "The user, by ID or name")->required();
}

struct Show : RegisterVerb {
  std::string user;

  void describe(Command& verb) { addKey(verb, user); }
  [[nodiscard]] int run() const { return show(options, user); }
};

struct Add : RegisterVerb {
  UserFields fields;
  bool withoutPassword = false;

  void describe(Command& verb) {
    addUserFields(verb, fields);
    verb.addFlag("--no-password", withoutPassword,
                 "The user cannot log in until somebody gives him a password");
  }
  [[nodiscard]] int run() const { return add(options, fields, withoutPassword); }
};

struct Edit : RegisterVerb {
  std::string user;
  UserFields fields;

  void describe(Command& verb) {
    addKey(verb, user);
    addUserFields(verb, fields);
  }
  [[nodiscard]] int run() const { return edit(options, user, fields); }
};

struct Delete : RegisterVerb {
  std::string user;

  void describe(Command& verb) { addKey(verb, user); }
  [[nodiscard]] int run() const { return remove(options, user); }
};

}  // namespace

void userShow(Command& verb) { declare<Show>(verb); }
void userAdd(Command& verb) { declare<Add>(verb); }
void userEdit(Command& verb) { declare<Edit>(verb); }
void userDelete(Command& verb) { declare<Delete>(verb); }

}  // namespace kv::cli
