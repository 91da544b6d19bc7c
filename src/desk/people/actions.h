// SPDX-License-Identifier: Apache-2.0
// What somebody has been asked to do.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "common/date.h"
#include "desk/session.h"
#include "recordset/recordset.h"

namespace kv::desk {

// The actions of a user, the logged-in one when none is named, who needs no right for it; for
// anybody else it takes the right to view user details. With `closed` also those that are closed.
[[nodiscard]] Ref<Recordset> listActions(const Session& session,
                                         const std::optional<std::string>& user, bool closed);

struct SettledAction {
  Date completed;
  std::optional<Date> closed;
};

// Records that an action is completed, or closed, on a day, today when none is given. What is
// closed counts as completed, on that day at the latest. Raises 5 when it was settled so before.
// Actions of others are for administrators.
SettledAction completeAction(const Session& session, std::int32_t action,
                             const std::optional<Date>& on = {});
SettledAction closeAction(const Session& session, std::int32_t action,
                          const std::optional<Date>& on = {});

}  // namespace kv::desk
