// SPDX-License-Identifier: Apache-2.0
// Changing a revision's fields.
#pragma once

#include <cstdint>

#include "desk/revisions/revision_fields.h"
#include "desk/session.h"

namespace kv::desk {

// Writes the fields given, after testing the right for each; level and location, which no right
// names, are for owners of the document. The document repeats level and date of its revision in
// force, and goes with it.
void editRevision(const Session& session, std::int32_t revision, const RevisionFields& fields);

}  // namespace kv::desk
