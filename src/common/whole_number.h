// SPDX-License-Identifier: Apache-2.0
// Whole numbers in texts that may be something else.
#pragma once

#include <charconv>
#include <cstdint>
#include <optional>
#include <string_view>

namespace kv {

// The number that a text is; nothing when it is none, or one that 32 bits do not hold.
[[nodiscard]] inline std::optional<std::int32_t> wholeNumber(std::string_view text) noexcept {
  std::int32_t number = 0;
  const char* end = text.data() + text.size();
  const auto [read, error] = std::from_chars(text.data(), end, number);
  if (error != std::errc() || read != end) return std::nullopt;
  return number;
}

}  // namespace kv
