// SPDX-License-Identifier: Apache-2.0
// The configuration values of a register.
#pragma once

#include <string>

#include "desk/session.h"
#include "recordset/recordset.h"

namespace kv::desk {

// One row with the value of a key, or with those of all keys.
[[nodiscard]] Ref<Recordset> configuration(const Session& session, const std::string& key = {});

// Stores a value, none for an empty text, and returns what is stored. Where users and actions are
// kept is only changed to a place where they can be reached. For administrators; raises 70 for the
// version of a register, which is no setting.
Variant setConfiguration(const Session& session, const std::string& key, const std::string& value);

}  // namespace kv::desk
