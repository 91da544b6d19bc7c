// SPDX-License-Identifier: Apache-2.0
// Gives the fields of a register that are still as new the meaning they have for imported data:
// labels, and for two user fields a number and a date in place of text.
#pragma once

#include "common/ref.h"
#include "data/connection.h"

namespace kv::desk {

// Within the caller's transaction. Labels that somebody has set stay; so do the types once a user
// field has a value or a label.
void prepareFields(const Ref<kvConnection>& connection);

}  // namespace kv::desk
