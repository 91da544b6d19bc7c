// SPDX-License-Identifier: Apache-2.0
// Who decides about a revision.
#pragma once

#include <optional>
#include <string>

#include "desk/revisions/revision_lookup.h"
#include "desk/session.h"

namespace kv::desk {

// A revision that awaits approval, and in whose place the logged-in user decides about it.
struct Approver {
  std::string id;    // as the approval list has it
  std::string name;  // the ID for a user who is gone
};

// The approver meant: the user given by ID or name, or the logged-in one. Raises 5 when that is no
// user, or nobody on the revision's approval list.
[[nodiscard]] Approver findApprover(const Session& session, std::int32_t revision,
                                    const std::optional<std::string>& user);

// Raises 5 when it is not the approver's turn, 70 when deciding in his place takes a right that the
// logged-in user does not hold. What the library allows is allowed, and the right to override.
void requireDecider(const Session& session, const FoundRevision& found, std::int32_t revision,
                    const Approver& approver);

// Raises 5: it is somebody else's turn.
[[noreturn]] void refuseTurn(const Session& session, const FoundRevision& found,
                             std::int32_t revision, const Approver& approver);

}  // namespace kv::desk
