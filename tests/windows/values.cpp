// SPDX-License-Identifier: Apache-2.0
// Prints what must be the same on every system: keys of text over all code points, numbers and
// dates as text and back. One line of a checksum each, so that two systems' answers can be
// compared; and nothing is printed twice that a system could get wrong in two ways that even out.

#include <fmt/format.h>

#include <array>
#include <bit>
#include <cstdint>
#include <random>
#include <string>

#include "common/convert.h"
#include "common/date.h"
#include "common/text.h"
#include "common/text_key.h"

namespace {

class Checksum {
 public:
  void add(std::string_view text) {
    constexpr std::uint64_t kPrime = 1099511628211U;  // FNV-1a
    for (const char c : text) sum_ = (sum_ ^ static_cast<unsigned char>(c)) * kPrime;
    sum_ = (sum_ ^ 0x100U) * kPrime;  // no byte: texts end here
    ++count_;
  }
  void print(const char* what) const { fmt::print("{}: {} texts, {:016x}\n", what, count_, sum_); }

 private:
  std::uint64_t sum_ = 14695981039346656037U;
  std::uint64_t count_ = 0;
};

std::string utf8(char32_t code) {
  const auto byte = [](char32_t bits) {
    return static_cast<char>(static_cast<unsigned char>(bits));
  };
  const auto next = [&](unsigned shift) { return byte(0x80U | ((code >> shift) & 0x3FU)); };
  if (code < 0x80) return {byte(code)};
  if (code < 0x800) return {byte(0xC0U | (code >> 6U)), next(0)};
  if (code < 0x10000) return {byte(0xE0U | (code >> 12U)), next(6), next(0)};
  return {byte(0xF0U | (code >> 18U)), next(12), next(6), next(0)};
}

void keys() {
  Checksum fold;
  Checksum order;
  Checksum between;
  for (char32_t code = 1; code < 0x110000; ++code) {
    if (code >= 0xD800 && code < 0xE000) continue;
    const std::string text = utf8(code);
    fold.add(kv::foldKey(text));
    order.add(kv::orderKey(text));
    // Some letters have other keys beside others.
    between.add(kv::orderKey("\xCE\x91" + text + "e\xCC\x81"));
  }
  fold.print("keys of equality");
  order.print("keys of order");
  between.print("keys of order between letters");
}

void numbers() {
  std::mt19937_64 random(20010309);  // the same sequence everywhere, unlike the distributions
  constexpr int kNumbers = 200000;
  Checksum doubles;
  Checksum singles;
  for (int i = 0; i < kNumbers; ++i) {
    const auto value = std::bit_cast<double>(random());
    const std::string text = kv::numberText(value);
    doubles.add(text);
    const auto back = kv::parseNumber(text);
    doubles.add(back ? fmt::format("{:016x}", std::bit_cast<std::uint64_t>(*back)) : "none");
    const auto cents = static_cast<double>(static_cast<std::int64_t>(random() >> 20U)) / 100;
    doubles.add(kv::numberText(cents));
    doubles.add(kv::numberText(kv::roundHalfEven(cents * 2) / 2));
    singles.add(kv::numberText(std::bit_cast<float>(static_cast<std::uint32_t>(random()))));
  }
  doubles.print("numbers");
  singles.print("numbers of single precision");
}

void dates() {
  std::mt19937_64 random(20010309);
  constexpr int kDates = 200000;
  constexpr std::uint64_t kRange = 3615ULL * 10000000;  // days to the end of 9999, and thousandths
  Checksum texts;
  Checksum back;
  for (int i = 0; i < kDates; ++i) {
    const kv::Date date(static_cast<double>(random() % kRange) / 12345.0 - 600000.0);
    for (const auto& text : std::array{kv::dateText(date), kv::isoText(date)}) {
      texts.add(text);
      const auto read = kv::parseDate(text);
      back.add(read ? std::to_string(read->milliseconds()) : "none");
    }
    texts.add(kv::stampText(date));
  }
  texts.print("dates");
  back.print("dates read back");
}

}  // namespace

int main() {
  keys();
  numbers();
  dates();
}
