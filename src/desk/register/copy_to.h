// SPDX-License-Identifier: Apache-2.0
// Copying a register to a new place.
#pragma once

#include <string>
#include <vector>

#include "desk/session.h"
#include "schema/copy_register.h"

namespace kv::desk {

enum class CopyWhat : std::uint8_t { Register, Users };

// Makes a register at `place`, a path or the location of an empty database, with everything in this
// one, or a database of users, their actions and saved queries; all of it or nothing. Returns the
// tables, the same on both sides. For administrators.
std::vector<CopiedTable> copyTo(const Session& session, const std::string& place, CopyWhat what,
                                const CopyProgress& progress = {});

}  // namespace kv::desk
