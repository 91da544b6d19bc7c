#include <algorithm>
#include <iostream>

#include "cli/answers/answer_set.h"
#include "cli/answers/output.h"
#include "cli/people/settings.h"
#include "cli/people/user_lookup.h"
#include "cli/program/client_transaction.h"
#include "cli/program/given_options.h"
#include "cli/program/terminal.h"
#include "cli/program/verbs.h"
#include "common/convert.h"
#include "common/error.h"
#include "common/text.h"
#include "rights/rights.h"

namespace kv::cli {

namespace {

using Numbers = std::vector<std::int16_t>;

constexpr const char* kOwnerRightsKey = "OwnerRights";
constexpr const char* kUserOptionsKey = "UserOptions";
constexpr const char* kRightsKey = "Rights";

// What is to be switched on and off among the settings of one kind.
struct Switches {
  std::optional<std::string> on;
  std::optional<std::string> off;

  [[nodiscard]] bool any() const { return on || off; }
};

struct Changes {
  std::optional<std::string> of;
  Switches user;
  bool inherit = false;
  Switches owner;
  Switches option;
  Switches application;

  [[nodiscard]] bool any() const {
    return user.any() || inherit || owner.any() || option.any() || application.any();
  }
};

struct Read {
  Numbers on;
  Numbers off;
};

Read read(SettingKind kind, const Switches& switches) {
  Read out;
  if (switches.on) out.on = readSettings(kind, *switches.on);
  if (switches.off) out.off = readSettings(kind, *switches.off);
  for (const auto number : out.on)
    if (std::find(out.off.begin(), out.off.end(), number) != out.off.end())
      throw UsageError("the " + std::string(kindText(kind)) + " " + std::to_string(number) +
                       " is both given and taken");
  return out;
}

std::string changed(std::string text, const Read& change) {
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

  void add(const kvProfile& profile, SettingKind kind, const Numbers& numbers) {
    for (const auto number : numbers)
      answer_.add({kindText(kind), number, settingText(kind, number),
                   isOn(session_, profile, kind, number)});
  }
  void write(Format format) const { writeRows(std::cout, answer_.rows(), format); }

 private:
  const Session& session_;
  AnswerSet answer_{{"Kind", kTypeVarWChar},
                    {"Number", kTypeSmallInt},
                    {"Description", kTypeVarWChar},
                    {"Granted", kTypeBoolean}};
};

int show(const Options& options, const std::optional<std::string>& of) {
  const Session session(options);
  const auto profile = profileOf(session, userToLookAt(session, of));
  SettingAnswer answer(session);
  for (const auto kind : {SettingKind::UserRight, SettingKind::OwnerRight, SettingKind::UserOption,
                          SettingKind::ApplicationOption})
    answer.add(*profile, kind, settingsOf(kind));
  answer.write(options.format);
  return kDone;
}

// Writes a user's own rights, beginning with those he has now, his own or his workgroup's.
Ref<kvProfile> changeUserRights(const Session& session, const std::string& id, const Read& change,
                                bool inherit) {
  const auto profile = profileOf(session, id);
  if (profile->Value("UserID").isEmpty())
    throw Error(kInvalidCall, "kvvesk", "The user '" + id + "' has no profile to keep rights in.");
  if (profile->Administrator() == -1)
    throw Error(kInvalidCall, "kvvesk",
                "The user '" + id + "' is an administrator, who holds every right.");
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
void changeOwnerRights(const Session& session, const Read& change) {
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

void changeUserOptions(const Session& session, const Read& change) {
  const std::string before = joinText(session.profile()->Value(kUserOptionsKey));
  if (before.size() < uoAutoAddNewKeyword) {
    std::string filled = before;
    filled.resize(uoAutoAddNewKeyword, '0');
    session.profile()->Store(kUserOptionsKey, filled);
  }
  for (const auto number : change.on) session->SetUserOption(number, true);
  for (const auto number : change.off) session->SetUserOption(number, false);
}

void changeApplicationOptions(const Session& session, const Read& change) {
  for (const auto number : change.on) session->SetAppOption(number, true);
  for (const auto number : change.off) session->SetAppOption(number, false);
}

Numbers bothOf(const Read& change) {
  Numbers numbers = change.on;
  numbers.insert(numbers.end(), change.off.begin(), change.off.end());
  std::sort(numbers.begin(), numbers.end());
  numbers.erase(std::unique(numbers.begin(), numbers.end()), numbers.end());
  return numbers;
}

int edit(const Options& options, const Changes& changes) {
  if (!changes.any()) throw UsageError("nothing to change: give at least one right or option");
  const bool ofUser = changes.user.any() || changes.inherit;
  if (ofUser != changes.of.has_value())
    throw UsageError("--of goes with --grant, --revoke and --inherit, and they need it");
  const Read user = read(SettingKind::UserRight, changes.user);
  const Read owner = read(SettingKind::OwnerRight, changes.owner);
  const Read option = read(SettingKind::UserOption, changes.option);
  const Read application = read(SettingKind::ApplicationOption, changes.application);

  const Session session(options);
  if (ofUser || changes.owner.any())
    session.requireAdministrator("only administrators may change rights");
  if (changes.application.any())
    session.requireAdministrator("only administrators may change application options");
  ClientTransaction transaction(session);
  transaction.lock("VeskConfig");  // one change of rights at a time
  SettingAnswer answer(session);
  if (ofUser) {
    const std::string id = findUser(session.database(), *changes.of);
    const auto profile = changeUserRights(session, id, user, changes.inherit);
    answer.add(*profile, SettingKind::UserRight,
               changes.inherit ? settingsOf(SettingKind::UserRight) : bothOf(user));
  }
  const auto& own = *session.profile();
  if (changes.owner.any()) {
    changeOwnerRights(session, owner);
    answer.add(own, SettingKind::OwnerRight, bothOf(owner));
  }
  if (changes.option.any()) {
    changeUserOptions(session, option);
    answer.add(own, SettingKind::UserOption, bothOf(option));
  }
  if (changes.application.any()) {
    changeApplicationOptions(session, application);
    answer.add(own, SettingKind::ApplicationOption, bothOf(application));
  }
  transaction.commit();
  answer.write(options.format);
  return kDone;
}

struct Show : RegisterVerb {
  std::optional<std::string> of;

  void describe(Command& verb) {
    addText(verb, "--of", of, "The user, by ID or name; whoever logs in when left out")
        ->typeName("USER");
  }
  [[nodiscard]] int run() const { return show(options, of); }
};

struct Edit : RegisterVerb {
  Changes changes;

  void describe(Command& verb) {
    const auto numbers = [&](const char* name, std::optional<std::string>& target,
                             const char* help) {
      return addText(verb, name, target, help)->typeName("NUMBERS");
    };
    addText(verb, "--of", changes.of, "Whose rights to change, by ID or name")->typeName("USER");
    auto* grant = numbers("--grant", changes.user.on, "Rights that the user gets; administrators");
    auto* revoke =
        numbers("--revoke", changes.user.off, "Rights that the user loses; administrators");
    verb.addFlag("--inherit", changes.inherit,
                 "The user has the rights of the workgroup from now on; administrators")
        ->excludes(grant)
        ->excludes(revoke);
    numbers("--owner-grant", changes.owner.on, "Rights that all owners get; administrators");
    numbers("--owner-revoke", changes.owner.off, "Rights that all owners lose; administrators");
    numbers("--option-on", changes.option.on, "Options of your own to switch on");
    numbers("--option-off", changes.option.off, "Options of your own to switch off");
    numbers("--app-on", changes.application.on,
            "Options of the whole register to switch on; administrators");
    numbers("--app-off", changes.application.off,
            "Options of the whole register to switch off; administrators");
  }
  [[nodiscard]] int run() const { return edit(options, changes); }
};

}  // namespace

void rightsShow(Command& verb) { declare<Show>(verb); }
void rightsEdit(Command& verb) { declare<Edit>(verb); }

}  // namespace kv::cli
