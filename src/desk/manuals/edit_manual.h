// SPDX-License-Identifier: Apache-2.0
// Changing a manual's fields.
#pragma once

#include <string>

#include "desk/manuals/manual_fields.h"
#include "desk/session.h"

namespace kv::desk {

// Writes the fields given, after testing the right for each; returns the manual's identifier.
std::string editManual(const Session& session, const std::string& manual,
                       const ManualFields& fields);

}  // namespace kv::desk
