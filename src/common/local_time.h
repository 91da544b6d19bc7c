// SPDX-License-Identifier: Apache-2.0
// The time of a place's clocks.
#pragma once

#include <ctime>

namespace kv {

[[nodiscard]] std::tm localTime(std::time_t seconds);

}  // namespace kv
