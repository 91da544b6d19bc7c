// SPDX-License-Identifier: Apache-2.0
// Deleting a revision, not the file at its location.
#pragma once

#include <cstdint>

#include "desk/session.h"

namespace kv::desk {

// Raises 5 for the revision in force. For those who count as owners of the document.
void deleteRevision(const Session& session, std::int32_t revision);

}  // namespace kv::desk
