// SPDX-License-Identifier: Apache-2.0
// The floor's statements for lists of what a user holds; but for the text keys they are the same on
// every engine.
#pragma once

#include <string>

#include "distribution_register.h"

namespace kv::bench {

// How an engine writes the text key of a column, and the order of a list by one.
struct TextKeys {
  std::string (*fold)(const std::string& column);
  std::string (*order)(const std::string& column);
  std::string user;  // the key of the user whose copies are listed
};

[[nodiscard]] std::string holdingsStatement(Holdings what, const TextKeys& keys);
// Whether the library reads an option of the register's for the order of the list.
[[nodiscard]] constexpr bool readsOptions(Holdings what) { return what != Holdings::Releases; }

}  // namespace kv::bench
