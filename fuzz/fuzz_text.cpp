// SPDX-License-Identifier: Apache-2.0
// Any text as a pattern, number, date, key or connection string. Each is read or refused orderly,
// and what is written of a value reads as the value again.

#include <cmath>
#include <cstring>
#include <initializer_list>

#include "common/convert.h"
#include "common/date.h"
#include "common/error.h"
#include "common/like.h"
#include "common/text.h"
#include "common/text_key.h"
#include "data/connection_string.h"
#include "law.h"

namespace kv {
namespace {

template <class Operation>
void refusesWith(std::initializer_list<std::int32_t> numbers, std::string_view text,
                 const Operation& operation) {
  try {
    operation();
  } catch (const Error& e) {
    bool expected = false;
    for (const auto number : numbers) expected = expected || number == e.number();
    fuzz::law(expected, "refusals have the numbers that are promised",
              std::string(text) + "\n" + e.description());
  }
}

// Pattern and text, separated by the first line end.
void patterns(std::string_view input) {
  const auto end = input.find('\n');
  const std::string_view pattern = input.substr(0, end);
  const std::string_view text = end == std::string_view::npos ? input : input.substr(end + 1);
  for (const auto wildcards : {Wildcards::PercentUnderscore, Wildcards::AsteriskQuestion}) {
    const LikePattern like(pattern, wildcards);
    fuzz::law(like.matches(text) == like.matchesFolded(foldKey(text)),
              "matching folds the text, and that is all", input);
  }
  fuzz::law(LikePattern("%").matches(text), "% matches any text", text);
  std::string escaped;
  for (const char c : text) {
    if (c == '%' || c == '_' || c == '[')
      escaped += {'[', c, ']'};
    else
      escaped += c;
  }
  fuzz::law(LikePattern(escaped).matches(text), "an escaped text matches itself", text);
}

void numbers(std::string_view text) {
  refusesWith({kOverflow}, text, [&] { (void)leadingNumber(text); });
  const auto number = parseNumber(text);
  if (!number || !std::isfinite(*number)) return;
  const std::string shown = numberText(*number);
  const auto again = parseNumber(shown);
  fuzz::law(again && numberText(*again) == shown, "a shown number reads as itself", shown);
}

void writtenDate(Date date) {
  fuzz::law(parseIso(isoText(date)) == date, "the stored form reads as the date", isoText(date));
  fuzz::law(Date(date.days()) == date, "the day count is the date", isoText(date));
  fuzz::law(Date(date.fields()) == date, "the fields are the date", isoText(date));
  if (date.fields().millisecond == 0 && date.fields().year >= 1000) {
    fuzz::law(parseDate(dateText(date)) == date, "the shown form reads as the date",
              dateText(date));
  }
}

void dates(std::string_view text) {
  for (const auto& date : {parseDate(text), parseDateLiteral(text), parseIso(text)})
    if (date) writtenDate(*date);
  double days = 0;
  if (text.size() < sizeof days) return;
  std::memcpy(&days, text.data(), sizeof days);
  refusesWith({kOverflow}, {}, [&] { writtenDate(Date(days)); });
}

void conversions(std::string_view text) {
  const Variant value(text);
  refusesWith({kTypeMismatch, kOverflow}, text, [&] { (void)toInt16(value); });
  refusesWith({kTypeMismatch, kOverflow}, text, [&] { (void)toInt32(value); });
  refusesWith({kTypeMismatch, kOverflow}, text, [&] { (void)toDouble(value); });
  refusesWith({kTypeMismatch, kOverflow}, text, [&] { (void)toBoolean(value); });
  refusesWith({kTypeMismatch, kOverflow}, text, [&] { (void)toDate(value); });
  fuzz::law(compareValues(value, value) == 0, "a text equals itself", text);
}

void keys(std::string_view text) {
  const std::string fold = foldKey(text);
  fuzz::law(foldKey(fold) == fold, "folding twice is folding once", text);
  (void)orderKey(text);
  (void)isStorableText(text);
  fuzz::law(characterCount(text) <= text.size(), "characters are bytes or more", text);
  fuzz::law(!isStorableText(text) || byteOffset(text, characterCount(text)) == text.size(),
            "the place after the last character is the end", text);
  refusesWith({kBadArgument, kNoConnection}, text, [&] { (void)parseConnectionString(text); });
}

}  // namespace
}  // namespace kv

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  const std::string text(data + 1, data + size);
  switch (*data % 5) {
    case 0: kv::patterns(text); break;
    case 1: kv::numbers(text); break;
    case 2: kv::dates(text); break;
    case 3: kv::conversions(text); break;
    default: kv::keys(text); break;
  }
  return 0;
}
