// SPDX-License-Identifier: Apache-2.0
#include "common/text.h"

#include <algorithm>

#include "common/text_key.h"

namespace kv {

std::string_view trimmed(std::string_view text) noexcept {
  const auto first = text.find_first_not_of(' ');
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

std::string asciiLowered(std::string_view text) {
  std::string out(text);
  std::transform(out.begin(), out.end(), out.begin(), asciiLower);
  return out;
}

bool equalNoCase(std::string_view a, std::string_view b) {
  const auto shared = std::min(a.size(), b.size());
  for (std::size_t i = 0; i < shared; ++i) {
    if (static_cast<unsigned char>(a[i] | b[i]) >= 0x80) return foldKey(a) == foldKey(b);
    if (asciiLower(a[i]) != asciiLower(b[i])) return false;
  }
  return a.size() == b.size();
}

bool isAscii(std::string_view text) noexcept {
  unsigned char all = 0;
  for (const char c : text) all = static_cast<unsigned char>(all | static_cast<unsigned char>(c));
  return all < 0x80;
}

bool isStorableText(std::string_view text) noexcept {
  if (isAscii(text)) return text.find('\0') == std::string_view::npos;
  const auto* p = reinterpret_cast<const unsigned char*>(text.data());
  const auto* const end = p + text.size();
  const auto tail = [&](int count, unsigned char low, unsigned char high) {
    if (end - p <= count || p[1] < low || p[1] > high) return false;
    for (int i = 2; i <= count; ++i)
      if (p[i] < 0x80 || p[i] > 0xBF) return false;
    p += count + 1;
    return true;
  };
  while (p < end) {
    const unsigned char c = *p;
    if (c == 0) return false;
    if (c < 0x80) {
      ++p;
      continue;
    }
    bool good = false;
    if (c >= 0xC2 && c <= 0xDF) {
      good = tail(1, 0x80, 0xBF);
    } else if (c >= 0xE0 && c <= 0xEF) {  // without overlong forms and surrogates
      good = tail(2, c == 0xE0 ? 0xA0 : 0x80, c == 0xED ? 0x9F : 0xBF);
    } else if (c >= 0xF0 && c <= 0xF4) {  // up to U+10FFFF
      good = tail(3, c == 0xF0 ? 0x90 : 0x80, c == 0xF4 ? 0x8F : 0xBF);
    }
    if (!good) return false;
  }
  return true;
}

std::size_t characterCount(std::string_view text) noexcept {
  return static_cast<std::size_t>(std::count_if(text.begin(), text.end(), [](char c) {
    return (static_cast<unsigned char>(c) & 0xC0U) != 0x80U;
  }));
}

std::size_t byteOffset(std::string_view text, std::size_t character) noexcept {
  std::size_t seen = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if ((static_cast<unsigned char>(text[i]) & 0xC0U) == 0x80U) continue;
    if (seen++ == character) return i;
  }
  return text.size();
}

std::string incrementSuffix(std::string_view text) {
  std::size_t start = text.size();
  while (start > 0 && isDigit(text[start - 1])) --start;
  std::string digits(text.substr(start));
  const auto significant = digits.find_first_not_of('0');
  digits.erase(0, significant == std::string::npos ? digits.size() : significant);
  std::size_t at = digits.size();
  while (at > 0 && digits[at - 1] == '9') digits[--at] = '0';
  if (at > 0)
    ++digits[at - 1];
  else
    digits.insert(digits.begin(), '1');
  return std::string(text.substr(0, start)) + digits;
}

std::string doubledQuotes(std::string_view text) {
  std::string out;
  out.reserve(text.size() + 2);
  for (const char c : text) {
    if (c == '\'') out += '\'';
    out += c;
  }
  return out;
}

}  // namespace kv
