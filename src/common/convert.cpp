// SPDX-License-Identifier: Apache-2.0
#include "common/convert.h"

#include <fmt/format.h>

#include <charconv>
#include <cmath>
#include <limits>

#include "common/error.h"
#include "common/text.h"

namespace kv {

namespace {

// The numeric value of a number kind; the caller has tested isNumber.
double numberOf(const Variant& value) {
  switch (value.kind()) {
    case VariantKind::Int16: return *value.as<std::int16_t>();
    case VariantKind::Int32: return *value.as<std::int32_t>();
    case VariantKind::Boolean: return *value.as<bool>() ? -1 : 0;
    case VariantKind::Single: return static_cast<double>(*value.as<float>());
    case VariantKind::Double: return *value.as<double>();
    case VariantKind::Date: return value.as<Date>()->days();
    case VariantKind::Empty:
    case VariantKind::Null:
    case VariantKind::String:
    case VariantKind::Object: break;
  }
  raise(kTypeMismatch);
}

template <class Whole>
Whole toWhole(const Variant& value) {
  const double rounded = roundHalfEven(toDouble(value));
  if (!(rounded >= std::numeric_limits<Whole>::min() &&
        rounded <= std::numeric_limits<Whole>::max()))
    raise(kOverflow);
  return static_cast<Whole>(rounded);
}

// Whether a number that no double can hold is too close to zero for one, not too large.
bool isTiny(std::string_view number) {
  const auto power = number.find_first_of("eE");
  if (power != std::string_view::npos) return number[power + 1] == '-';
  return number.find_first_of("123456789") > number.find('.');
}

// Reads a decimal number at the start of `text`; `end` receives where it stops. One that is too
// large gives infinity.
std::optional<double> readNumber(std::string_view text, std::size_t& end) {
  std::size_t at = 0;
  if (at < text.size() && (text[at] == '+' || text[at] == '-')) ++at;
  const auto digitsFrom = at;
  while (at < text.size() && isDigit(text[at])) ++at;
  auto digits = at - digitsFrom;
  if (at < text.size() && text[at] == '.') {
    const auto from = ++at;
    while (at < text.size() && isDigit(text[at])) ++at;
    digits += at - from;
  }
  if (digits == 0) return std::nullopt;
  if (at < text.size() && (text[at] == 'e' || text[at] == 'E')) {
    auto power = at + 1;
    if (power < text.size() && (text[power] == '+' || text[power] == '-')) ++power;
    const auto from = power;
    while (power < text.size() && isDigit(text[power])) ++power;
    if (power > from) at = power;
  }
  end = at;
  const bool plus = text[0] == '+';
  double value = 0;
  const auto* const first = text.data() + (plus ? 1 : 0);
  const auto [stop, problem] = std::from_chars(first, text.data() + at, value);
  if (problem == std::errc::result_out_of_range)
    return isTiny(text.substr(0, at)) ? 0 : std::numeric_limits<double>::infinity();
  if (problem != std::errc()) return std::nullopt;
  return value;
}

std::string_view withoutSpace(std::string_view text) {
  constexpr std::string_view kSpace = " \t\r\n";
  const auto first = text.find_first_not_of(kSpace);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(kSpace) - first + 1);
}

// As parseNumber, with infinity for numbers that are too large.
std::optional<double> wholeNumber(std::string_view text) {
  const auto body = withoutSpace(text);
  std::size_t end = 0;
  const auto value = readNumber(body, end);
  return value && end == body.size() ? value : std::nullopt;
}

}  // namespace

std::string numberText(double value) {
  if (value == 0) return "0";
  return fmt::format("{:.15G}", value);
}

std::string numberText(float value) {
  if (value == 0) return "0";
  return fmt::format("{:.7G}", value);
}

std::string joinText(const Variant& value) {
  return value.isNull() || value.isEmpty() ? std::string() : toText(value);
}

std::string toText(const Variant& value) {
  switch (value.kind()) {
    case VariantKind::Empty: return {};
    case VariantKind::Null: raise(kInvalidNull);
    case VariantKind::Int16: return std::to_string(*value.as<std::int16_t>());
    case VariantKind::Int32: return std::to_string(*value.as<std::int32_t>());
    case VariantKind::Boolean: return *value.as<bool>() ? "True" : "False";
    case VariantKind::Single: return numberText(*value.as<float>());
    case VariantKind::Double: return numberText(*value.as<double>());
    case VariantKind::Date: return dateText(*value.as<Date>());
    case VariantKind::String: return *value.as<std::string>();
    case VariantKind::Object: break;
  }
  raise(kTypeMismatch);
}

std::int16_t toInt16(const Variant& value) { return toWhole<std::int16_t>(value); }
std::int32_t toInt32(const Variant& value) { return toWhole<std::int32_t>(value); }

double toDouble(const Variant& value) {
  if (value.isNull()) raise(kInvalidNull);
  if (value.isEmpty()) return 0;
  if (value.isText()) {
    const auto number = wholeNumber(*value.as<std::string>());
    if (!number) raise(kTypeMismatch);
    if (std::isinf(*number)) raise(kOverflow);
    return *number;
  }
  return numberOf(value);
}

bool toBoolean(const Variant& value) {
  if (value.isText()) {
    const std::string word = asciiLowered(trimmed(*value.as<std::string>()));
    if (word == "true") return true;
    if (word == "false") return false;
  }
  return toDouble(value) != 0;
}

Date toDate(const Variant& value) {
  if (value.kind() == VariantKind::Date) return *value.as<Date>();
  if (value.isText()) {
    const auto date = parseDate(*value.as<std::string>());
    if (!date) raise(kTypeMismatch);
    return *date;
  }
  return Date(toDouble(value));
}

bool equalsEmptyText(const Variant& value) {
  return value.isEmpty() || (value.isText() && value.as<std::string>()->empty());
}

std::optional<int> compareValues(const Variant& a, const Variant& b) {
  if (a.isNull() || b.isNull()) return std::nullopt;
  if (a.kind() == VariantKind::Object || b.kind() == VariantKind::Object) raise(kTypeMismatch);
  if (a.isText() || b.isText()) {
    if (a.isNumber()) return -1;
    if (b.isNumber()) return 1;
    const int order = joinText(a).compare(joinText(b));
    return order < 0 ? -1 : order > 0 ? 1 : 0;
  }
  const double left = a.isEmpty() ? 0 : numberOf(a);
  const double right = b.isEmpty() ? 0 : numberOf(b);
  return left < right ? -1 : left > right ? 1 : 0;
}

std::optional<double> parseNumber(std::string_view text) {
  const auto value = wholeNumber(text);
  return value && std::isfinite(*value) ? value : std::nullopt;
}

double leadingNumber(std::string_view text) {
  std::size_t end = 0;
  const double value = readNumber(withoutSpace(text), end).value_or(0);
  if (std::isinf(value)) raise(kOverflow);
  return value;
}

double roundHalfEven(double value) noexcept {
  const double floor = std::floor(value);
  const double fraction = value - floor;
  if (fraction < 0.5) return floor;
  if (fraction > 0.5) return floor + 1;
  return std::fmod(floor, 2) == 0 ? floor : floor + 1;
}

Variant textOrNull(std::string_view text) { return text.empty() ? Variant(Null) : Variant(text); }

}  // namespace kv
