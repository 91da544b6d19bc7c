// SPDX-License-Identifier: Apache-2.0
// Putting a revision in force; the one before goes out of date.
#pragma once

#include <cstdint>
#include <vector>

#include "desk/revisions/revision_step.h"

namespace kv::desk {

struct CurrentRevision {
  RevisionStep step;
  std::vector<std::int32_t> outOfDate;  // those that were in force until now
};

// It has to be approved, or to have been in force before; where the document has no approvers, it
// may come straight from its preparation. Raises 5 for any other. Takes the right to set current
// revisions.
CurrentRevision setCurrentRevision(const Session& session, std::int32_t revision);

}  // namespace kv::desk
