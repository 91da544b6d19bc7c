// SPDX-License-Identifier: Apache-2.0
// Rights and options: looking at them and changing them.
#pragma once

#include <optional>
#include <string>

#include "desk/people/settings.h"
#include "desk/session.h"
#include "recordset/recordset.h"

namespace kv::desk {

// What is to be switched on and off among the settings of one kind.
struct Switches {
  Settings on;
  Settings off;

  [[nodiscard]] bool any() const { return !on.empty() || !off.empty(); }
};

struct RightsChange {
  std::optional<std::string> of;  // whose rights, by ID or name
  Switches user;
  bool inherit = false;  // those of the workgroup from now on, in place of his own
  Switches owner;
  Switches option;  // of the logged-in user
  Switches application;

  [[nodiscard]] bool ofUser() const { return user.any() || inherit; }
  [[nodiscard]] bool any() const {
    return ofUser() || owner.any() || option.any() || application.any();
  }
  // Raises WrongInput when there is nothing to change, when a setting is both given and taken, and
  // when rights are to be changed of nobody, or nothing of somebody.
  void check() const;
};

// Every setting with its number, text and whether it is granted to a user: the logged-in one when
// none is named, who needs no right for it; for anybody else it takes the right to view user
// details.
[[nodiscard]] Ref<Recordset> listRights(const Session& session,
                                        const std::optional<std::string>& user);

// Returns the settings that were changed, in the same form. A user whose rights are changed for the
// first time begins with those of the workgroup. All but the logged-in user's own options is for
// administrators.
Ref<Recordset> changeRights(const Session& session, const RightsChange& change);

}  // namespace kv::desk
