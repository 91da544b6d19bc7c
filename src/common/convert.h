// SPDX-License-Identifier: Apache-2.0
// Conversions and comparisons of values by the host's rules. Every one states what becomes of Null
// and Empty.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "common/export.h"
#include "common/variant.h"

namespace kv {

// The value joined to an empty string: Null and Empty give "".
[[nodiscard]] KVVESK_API std::string joinText(const Variant& value);

// The strict conversions: Null raises 94, text that does not read as the target raises 13, a value
// out of range raises 6. Empty counts as 0, "", False or 1899-12-30. Fractions round half to even.
[[nodiscard]] KVVESK_API std::string toText(const Variant& value);
[[nodiscard]] KVVESK_API std::int16_t toInt16(const Variant& value);
[[nodiscard]] KVVESK_API std::int32_t toInt32(const Variant& value);
[[nodiscard]] KVVESK_API double toDouble(const Variant& value);
[[nodiscard]] KVVESK_API bool toBoolean(const Variant& value);
[[nodiscard]] KVVESK_API Date toDate(const Variant& value);

// Whether the value equals the empty string, as a condition of the host has it: Empty and "" do;
// Null, numbers and other text do not.
[[nodiscard]] KVVESK_API bool equalsEmptyText(const Variant& value);

// -1, 0 or 1; nothing when either side is Null. Numbers by value, text by code point, every number
// before every text, Empty as 0 beside numbers and as "" beside text. Objects raise 13.
[[nodiscard]] KVVESK_API std::optional<int> compareValues(const Variant& a, const Variant& b);

// Numbers in text: up to 15 significant digits (7 for single precision), point as separator.
[[nodiscard]] KVVESK_API std::string numberText(double value);
[[nodiscard]] KVVESK_API std::string numberText(float value);

// A whole text that is one number, blanks around it allowed; nothing otherwise, nor for a number
// too large for a double.
[[nodiscard]] KVVESK_API std::optional<double> parseNumber(std::string_view text);

// The number that the text begins with, blanks skipped; 0 when it begins with none ("12abc" gives
// 12). Raises 6 for one too large.
[[nodiscard]] KVVESK_API double leadingNumber(std::string_view text);

// Nearest whole number, halves to the even neighbour.
[[nodiscard]] KVVESK_API double roundHalfEven(double value) noexcept;

// The rule by which user text goes into a field: an empty string is stored as Null.
[[nodiscard]] KVVESK_API Variant textOrNull(std::string_view text);

}  // namespace kv
