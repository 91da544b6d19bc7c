// SPDX-License-Identifier: Apache-2.0
// The rows that GetRows gives, as an array of the platform.
#pragma once

#include <vector>

#include "com/platform.h"
#include "common/variant.h"

namespace kv::com {

// values[field][row] as an array with the field as its first index; both begin at 0.
void toRowsArray(const std::vector<std::vector<Variant>>& values, VARIANT& out);

}  // namespace kv::com
