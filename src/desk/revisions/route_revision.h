// SPDX-License-Identifier: Apache-2.0
// Asking the approvers of a document for their approval of a revision.
#pragma once

#include <cstdint>

#include "desk/revisions/revision_step.h"

namespace kv::desk {

// The first time, the document's approvers become those of the revision. With `again` all approvers
// decide anew about one that awaits approval or is approved; without it raises 5 for such a
// revision. For those who count as owners of the document.
RevisionStep routeRevision(const Session& session, std::int32_t revision, bool again = false);

}  // namespace kv::desk
