// SPDX-License-Identifier: Apache-2.0
// What the twelve fields are that each register defines for its users, User00 to User11.
#pragma once

#include <cstdint>

#include "common/convert.h"

namespace kv::desk {

enum class UserFieldType : std::uint8_t { Text, Number, Date };

// As UserConfig keeps it in the column "Type" + the field's name.
[[nodiscard]] inline UserFieldType userFieldType(const Variant& code) {
  constexpr std::int32_t kNumber = 1;
  constexpr std::int32_t kDate = 2;
  const std::int32_t number = code.isNull() || code.isEmpty() ? 0 : toInt32(code);
  return number == kNumber ? UserFieldType::Number
         : number == kDate ? UserFieldType::Date
                           : UserFieldType::Text;
}

}  // namespace kv::desk
