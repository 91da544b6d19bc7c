// SPDX-License-Identifier: Apache-2.0
#include "desk/people/user_rights.h"

#include <algorithm>

#include "classes/rights/rights.h"
#include "common/convert.h"
#include "common/text.h"
#include "desk/answer_set.h"
#include "desk/people/user_lookup.h"
#include "desk/refusal.h"
#include "desk/transaction.h"

namespace kv::desk {

namespace {

constexpr const char* kOwnerRightsKey = "OwnerRights";
constexpr const char* kUserOptionsKey = "UserOptions";
constexpr const char* kRightsKey = "Rights";

std::string changed(std::string text, const Switches& change) {
  return withSettings(withSettings(std::move(text), change.on, true), change.off, false);
}

// The profile of a user as a log-in would make it.
Ref<kvProfile> profileOf(const Session& session, const std::string& id) {
  if (equalNoCase(id, session.profile()->UserID())) return session.profile();
  auto profile = makeRef<kvProfile>();
  profile->attach(session->DataServer()->Connection());
  bool administrator = false;
  const std::string rights = session->MainUser()->RightsOf(id, administrator);
  profile->setUser(id, session->User()->getUserName(doubledQuotes(id)), rights, administrator);
  return profile;
}

bool isOn(const Session& session, const kvProfile& profile, SettingKind kind, std::int16_t number) {
  switch (kind) {
    case SettingKind::UserRight: return profile.HasRight(number);
    case SettingKind::OwnerRight: return session->OwnerAccess(number, kWithoutOverride);
    case SettingKind::UserOption: {
      const std::string options = joinText(profile.Value(kUserOptionsKey));
      const auto at = static_cast<std::size_t>(number) - 1;
      return at < options.size() && options[at] == '1';
    }
    case SettingKind::ApplicationOption: return session->AppOption(number);
  }
  return false;
}

class SettingAnswer {
 public:
  explicit SettingAnswer(const Session& session) : session_(session) {}

  void add(const kvProfile& profile, SettingKind kind, const Settings& numbers) {
    for (const auto number : numbers)
      answer_.add({kindText(kind), number, settingText(kind, number),
                   isOn(session_, profile, kind, number)});
  }
  [[nodiscard]] Ref<Recordset> take() const { return answer_.take(); }

 private:
  const Session& session_;
  AnswerSet answer_{{"Kind", kTypeVarWChar},
                    {"Number", kTypeSmallInt},
                    {"Description", kTypeVarWChar},
                    {"Granted", kTypeBoolean}};
};

// Writes a user's own rights, beginning with those he has now, his own or his workgroup's.
Ref<kvProfile> changeUserRights(const Session& session, const std::string& id,
                                const Switches& change, bool inherit) {
  const auto profile = profileOf(session, id);
  if (profile->Value("UserID").isEmpty())
    refuse("The user '" + id + "' has no profile to keep rights in.");
  if (profile->Administrator() == -1)
    refuse("The user '" + id + "' is an administrator, who holds every right.");
  if (inherit) {
    profile->Store(kRightsKey, Null);
  } else {
    std::string rights = changed(profile->Rights(), change);
    rights.resize(std::max(rights.size(), kRightsLength), '0');
    profile->Store(kRightsKey, rights);
  }
  return profileOf(session, id);
}

// A text that is too short is filled up first: the library overwrites places and adds none.
void changeOwnerRights(const Session& session, const Switches& change) {
  const auto config = session->DataServer()->Config();
  const std::string before = joinText(config->Value(kOwnerRightsKey));
  if (before.size() < orRemoveFromUserPersonal) {
    std::string filled = before;
    filled.resize(orRemoveFromUserPersonal, '0');
    config->Store(kOwnerRightsKey, filled);
  }
  for (const auto number : change.on) session->SetOwnerAccess(number, true);
  for (const auto number : change.off) session->SetOwnerAccess(number, false);
}

void changeUserOptions(const Session& session, const Switches& change) {
  const std::string before = joinText(session.profile()->Value(kUserOptionsKey));
  if (before.size() < uoAutoAddNewKeyword) {
    std::string filled = before;
    filled.resize(uoAutoAddNewKeyword, '0');
    session.profile()->Store(kUserOptionsKey, filled);
  }
  for (const auto number : change.on) session->SetUserOption(number, true);
  for (const auto number : change.off) session->SetUserOption(number, false);
}

void changeApplicationOptions(const Session& session, const Switches& change) {
  for (const auto number : change.on) session->SetAppOption(number, true);
  for (const auto number : change.off) session->SetAppOption(number, false);
}

Settings bothOf(const Switches& change) {
  Settings numbers = change.on;
  numbers.insert(numbers.end(), change.off.begin(), change.off.end());
  std::sort(numbers.begin(), numbers.end());
  numbers.erase(std::unique(numbers.begin(), numbers.end()), numbers.end());
  return numbers;
}

void requireOneWay(SettingKind kind, const Switches& change) {
  for (const auto number : change.on)
    if (std::find(change.off.begin(), change.off.end(), number) != change.off.end())
      throw WrongInput("the " + std::string(kindText(kind)) + " " + std::to_string(number) +
                       " is both given and taken");
}

void requireRights(const Session& session, const RightsChange& change) {
  if (change.ofUser() || change.owner.any())
    session.requireAdministrator("only administrators may change rights");
  if (change.application.any())
    session.requireAdministrator("only administrators may change application options");
}

}  // namespace

void RightsChange::check() const {
  if (!any()) throw WrongInput("nothing to change: give at least one right or option");
  if (ofUser() != of.has_value())
    throw WrongInput("a user goes with a change of his rights, and the other way round");
  requireOneWay(SettingKind::UserRight, user);
  requireOneWay(SettingKind::OwnerRight, owner);
  requireOneWay(SettingKind::UserOption, option);
  requireOneWay(SettingKind::ApplicationOption, application);
}

Ref<Recordset> listRights(const Session& session, const std::optional<std::string>& user) {
  const auto profile = profileOf(session, userToLookAt(session, user));
  SettingAnswer answer(session);
  for (const auto kind : {SettingKind::UserRight, SettingKind::OwnerRight, SettingKind::UserOption,
                          SettingKind::ApplicationOption})
    answer.add(*profile, kind, settingsOf(kind));
  return answer.take();
}

Ref<Recordset> changeRights(const Session& session, const RightsChange& change) {
  change.check();
  requireRights(session, change);
  Transaction transaction(session);
  transaction.lock("VeskConfig");  // one change of rights at a time
  SettingAnswer answer(session);
  if (change.ofUser()) {
    const std::string id = findUser(session.database(), *change.of);
    const auto profile = changeUserRights(session, id, change.user, change.inherit);
    answer.add(*profile, SettingKind::UserRight,
               change.inherit ? settingsOf(SettingKind::UserRight) : bothOf(change.user));
  }
  const auto& own = *session.profile();
  if (change.owner.any()) {
    changeOwnerRights(session, change.owner);
    answer.add(own, SettingKind::OwnerRight, bothOf(change.owner));
  }
  if (change.option.any()) {
    changeUserOptions(session, change.option);
    answer.add(own, SettingKind::UserOption, bothOf(change.option));
  }
  if (change.application.any()) {
    changeApplicationOptions(session, change.application);
    answer.add(own, SettingKind::ApplicationOption, bothOf(change.application));
  }
  transaction.commit();
  return answer.take();
}

}  // namespace kv::desk
