// SPDX-License-Identifier: Apache-2.0
// Looking at workgroups.
#pragma once

#include <optional>
#include <string>

#include "desk/session.h"
#include "recordset/recordset.h"

namespace kv::desk {

// All workgroups or, when one is named by number or title, its members. Takes the right to view the
// list of users.
[[nodiscard]] Ref<Recordset> listWorkgroups(const Session& session,
                                            const std::optional<std::string>& membersOf = {});

}  // namespace kv::desk
