// SPDX-License-Identifier: Apache-2.0
// A value on its way into or out of a database engine: what both engines can store.
#pragma once

#include <cstdint>
#include <string>
#include <variant>

#include "common/date.h"

namespace kv {

// Null, whole number, floating number, text, date. Booleans travel as -1 and 0.
using SqlValue = std::variant<std::monostate, std::int64_t, double, std::string, Date>;

}  // namespace kv
