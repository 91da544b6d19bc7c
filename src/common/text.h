// SPDX-License-Identifier: Apache-2.0
// Plain rules about text that every floor shares. Text is UTF-8 throughout.
#pragma once

#include <string>
#include <string_view>

namespace kv {

[[nodiscard]] constexpr bool isDigit(char c) noexcept { return c >= '0' && c <= '9'; }
[[nodiscard]] constexpr bool isAsciiLetter(char c) noexcept {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}
[[nodiscard]] constexpr char asciiLower(char c) noexcept {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

// Without leading and trailing blanks; other white space counts as text, as the host's Trim has it.
[[nodiscard]] std::string_view trimmed(std::string_view text) noexcept;

// Lower case of the letters A to Z only; for keywords and keys, not for data.
[[nodiscard]] std::string asciiLowered(std::string_view text);

// Equal without regard to case of any letter.
[[nodiscard]] bool equalNoCase(std::string_view a, std::string_view b);

// Bytes below 0x80 only.
[[nodiscard]] bool isAscii(std::string_view text) noexcept;

// Well-formed UTF-8 without U+0000, which one of the engines cannot store.
[[nodiscard]] bool isStorableText(std::string_view text) noexcept;

// Code points in well-formed UTF-8.
[[nodiscard]] std::size_t characterCount(std::string_view text) noexcept;

// Byte offset of a 0-based character; the size of the text when it has fewer characters.
[[nodiscard]] std::size_t byteOffset(std::string_view text, std::size_t character) noexcept;

// The longest all-digit tail is replaced by the decimal text of its value plus 1, without leading
// zeros: "0001" gives "2", "A-09" gives "A-10", "A" gives "A1". Tails of any length are counted
// exactly.
[[nodiscard]] std::string incrementSuffix(std::string_view text);

// The text with every apostrophe doubled, so that it can stand inside a quoted literal.
[[nodiscard]] std::string doubledQuotes(std::string_view text);

}  // namespace kv
