// SPDX-License-Identifier: Apache-2.0
#include "desk/people/user_records.h"

#include "common/convert.h"
#include "common/text.h"
#include "data/table_value.h"
#include "desk/people/user_lookup.h"
#include "desk/people/workgroup.h"
#include "desk/refusal.h"

namespace kv::desk {

namespace {

constexpr const char* kProfiles = "VeskProfiles";

std::string ofUser(const std::string& id) { return "UserID = '" + doubledQuotes(id) + "'"; }

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

}  // namespace

void lockUsers(Transaction& transaction) {
  transaction.lock("Users");
  transaction.lock(kProfiles);
}

void requireFreeName(const Session& session, const std::string& name, const std::string& except) {
  if (isUser(session.database(), name, except)) refuse("There is a user '" + name + "' already.");
}

void setProfileName(const Session& session, const std::string& id, const std::string& name) {
  const auto rs =
      openOwn(session.database(), "Select UserName From VeskProfiles Where " + ofUser(id));
  if (rs->Eof()) return;
  rs->Fields(0)->Value(name);
  rs->Update();
}

void setWorkgroup(const Session& session, const std::string& id, const std::string& workgroup) {
  ensureProfile(session, id);
  const std::int32_t number = findWorkgroup(session, workgroup);
  const bool before = isAdministrator(session, id);
  if (before || number == kSuperUsers)
    session.requireAdministrator("only administrators may change who is one");
  storeTableValue(session.database(), kProfiles, "GroupID", number, ofUser(id));
  // A mark in the profile makes an administrator as well. Who is put elsewhere is none any more,
  // whichever of the two it was.
  if (before && number != kSuperUsers)
    storeTableValue(session.database(), kProfiles, "Administrator", false, ofUser(id));
  if (before) requireAnAdministrator(session);
}

bool isAdministrator(const Session& session, const std::string& id) {
  bool administrator = false;
  (void)session->MainUser()->RightsOf(id, administrator);
  return administrator;
}

void requireAnAdministrator(const Session& session) {
  const auto rs =
      openOwn(session.database(),
              "Select UserID From VeskProfiles Where Administrator = True or GroupID = " +
                  std::to_string(kSuperUsers),
              kReadOnly);
  if (rs->RecordCount() == 0) refuse("This would leave the register without an administrator.");
}

void requireAdministratorFor(const Session& session, const std::string& id, const char* why) {
  if (isAdministrator(session, id)) session.requireAdministrator(why);
}

}  // namespace kv::desk
