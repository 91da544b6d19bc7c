// SPDX-License-Identifier: Apache-2.0
// Values as texts for people and programs outside.
#pragma once

#include <string>

#include "common/variant.h"

namespace kv {

// A value as text: ISO dates, true and false, numbers with a point, nothing for Null.
[[nodiscard]] std::string plainText(const Variant& value);

}  // namespace kv
