// SPDX-License-Identifier: Apache-2.0
// Approving or rejecting a revision.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "desk/revisions/revision_step.h"

namespace kv::desk {

enum class Decision : std::uint8_t { Approve, Reject };

struct DecidedRevision {
  RevisionStep step;
  std::string approver;  // the name of whoever's turn it was
};

// Decides for the approver named, by ID or name, or for the logged-in user, with a remark. Raises 5
// when the revision does not await approval or it is somebody else's turn, 70 when deciding in the
// approver's place takes a right that the user does not hold.
DecidedRevision decideRevision(const Session& session, std::int32_t revision, Decision decision,
                               const std::optional<std::string>& approver = {},
                               const std::optional<std::string>& notes = {});

}  // namespace kv::desk
