// SPDX-License-Identifier: Apache-2.0
// Adding a manual, without documents as yet.
#pragma once

#include <string>

#include "desk/manuals/manual_fields.h"
#include "desk/session.h"

namespace kv::desk {

// Raises WrongInput for a new manual without a name.
void requireManualName(const ManualFields& fields);

// Returns the manual's identifier, which no other manual has. Takes the right to create manuals.
[[nodiscard]] std::string addManual(const Session& session, const ManualFields& fields);

}  // namespace kv::desk
