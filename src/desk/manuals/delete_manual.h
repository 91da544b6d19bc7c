// SPDX-License-Identifier: Apache-2.0
// Deleting a manual with its copies; the documents in it stay in the register.
#pragma once

#include <string>

#include "desk/session.h"

namespace kv::desk {

// Returns its identifier. Takes the right to delete manuals.
std::string deleteManual(const Session& session, const std::string& manual);

}  // namespace kv::desk
