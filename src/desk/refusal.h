// SPDX-License-Identifier: Apache-2.0
// How a use case says no.
#pragma once

#include <string>
#include <string_view>

#include "common/error.h"

namespace kv::desk {

// What was given makes no sense, whatever the register holds: nothing to change, an empty name, a
// column that no table has. Who asked can tell it from a refusal of the register's.
class WrongInput : public Error {
 public:
  explicit WrongInput(std::string description);
};

// Raises WrongInput when there is nothing to change.
void requireChange(bool any);

// Raises 5 with the reason.
[[noreturn]] void refuse(std::string why);

// Raises 70 with the reason.
[[noreturn]] void deny(std::string_view why);

}  // namespace kv::desk
