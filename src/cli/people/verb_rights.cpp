// SPDX-License-Identifier: Apache-2.0
#include <iostream>

#include "cli/answers/output.h"
#include "cli/program/given_options.h"
#include "cli/program/terminal.h"
#include "cli/program/verbs.h"
#include "desk/people/user_rights.h"

namespace kv::cli {

namespace {

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

desk::Switches read(desk::SettingKind kind, const Switches& switches) {
  desk::Switches out;
  if (switches.on) out.on = desk::readSettings(kind, *switches.on);
  if (switches.off) out.off = desk::readSettings(kind, *switches.off);
  return out;
}

struct Show : RegisterVerb {
  std::optional<std::string> of;

  void describe(Command& verb) {
    addText(verb, "--of", of, "The user, by ID or name; whoever logs in when left out")
        ->typeName("USER");
  }
  void run(const Session& session) const {
    writeRows(std::cout, *desk::listRights(session, of), options.format);
  }
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
  void check() const {
    if (!changes.any()) throw UsageError("nothing to change: give at least one right or option");
    if ((changes.user.any() || changes.inherit) != changes.of.has_value())
      throw UsageError("--of goes with --grant, --revoke and --inherit, and they need it");
    change().check();
  }
  void run(const Session& session) const {
    writeRows(std::cout, *desk::changeRights(session, change()), options.format);
  }

 private:
  [[nodiscard]] desk::RightsChange change() const {
    return {.of = changes.of,
            .user = read(desk::SettingKind::UserRight, changes.user),
            .inherit = changes.inherit,
            .owner = read(desk::SettingKind::OwnerRight, changes.owner),
            .option = read(desk::SettingKind::UserOption, changes.option),
            .application = read(desk::SettingKind::ApplicationOption, changes.application)};
  }
};

}  // namespace

void rightsShow(Command& verb) { declare<Show>(verb); }
void rightsEdit(Command& verb) { declare<Edit>(verb); }

}  // namespace kv::cli
