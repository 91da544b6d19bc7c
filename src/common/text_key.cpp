// SPDX-License-Identifier: Apache-2.0
#include "common/text_key.h"

#include <utf8proc.h>

#include <array>
#include <vector>

#include "common/text.h"

namespace kv {

namespace {

constexpr utf8proc_int32_t kFinalSigma = 0x03C2;
constexpr utf8proc_int32_t kSigma = 0x03C3;
constexpr utf8proc_int32_t kCapitalIWithDot = 0x0130;
constexpr utf8proc_int32_t kCombiningDotAbove = 0x0307;

void append(utf8proc_int32_t codepoint, std::string& out) {
  std::array<utf8proc_uint8_t, 4> bytes{};
  const auto count = utf8proc_encode_char(codepoint, bytes.data());
  out.append(reinterpret_cast<const char*>(bytes.data()), static_cast<std::size_t>(count));
}

// Calls visit for every code point. Malformed bytes are refused at the boundary and do not come
// here; should one do so all the same, it counts as U+FFFD.
template <class Visit>
void eachCodepoint(std::string_view text, Visit visit) {
  const auto* bytes = reinterpret_cast<const utf8proc_uint8_t*>(text.data());
  auto left = static_cast<utf8proc_ssize_t>(text.size());
  while (left > 0) {
    utf8proc_int32_t codepoint = 0;
    auto used = utf8proc_iterate(bytes, left, &codepoint);
    if (used <= 0) {
      used = 1;
      codepoint = 0xFFFD;
    }
    visit(codepoint);
    bytes += used;
    left -= used;
  }
}

void foldCodepoint(utf8proc_int32_t codepoint, std::string& out) {
  if (codepoint == kCapitalIWithDot) {  // the one letter whose root lower case is two
    out += 'i';
    append(kCombiningDotAbove, out);
    return;
  }
  const auto lower = utf8proc_tolower(codepoint);
  append(lower == kFinalSigma ? kSigma : lower, out);
}

// Folds the ASCII head of the text; returns its length.
std::size_t foldAscii(std::string_view text, std::string& out) {
  out.resize(text.size());
  std::size_t i = 0;
  for (; i < text.size(); ++i) {
    const char c = text[i];
    if (static_cast<unsigned char>(c) >= 0x80) break;
    out[i] = c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c;
  }
  out.resize(i);
  return i;
}

}  // namespace

void foldKeyInto(std::string_view text, std::string& out) {
  const auto done = foldAscii(text, out);
  if (done < text.size())
    eachCodepoint(text.substr(done), [&](utf8proc_int32_t c) { foldCodepoint(c, out); });
}

void orderKeyInto(std::string_view text, std::string& out) {
  if (foldAscii(text, out) == text.size()) return;
  const std::string fold = foldKey(text);
  out = fold;
  if (isAscii(fold)) return;  // the Kelvin sign has the letter k
  out.clear();
  // The whole text at once: canonical decomposition also puts runs of marks into their order.
  std::vector<utf8proc_int32_t> parts(fold.size() * 2);
  const auto decompose = [&] {
    return utf8proc_decompose(reinterpret_cast<const utf8proc_uint8_t*>(fold.data()),
                              static_cast<utf8proc_ssize_t>(fold.size()), parts.data(),
                              static_cast<utf8proc_ssize_t>(parts.size()), UTF8PROC_DECOMPOSE);
  };
  auto count = decompose();
  if (count > static_cast<utf8proc_ssize_t>(parts.size())) {
    parts.resize(static_cast<std::size_t>(count));
    count = decompose();
  }
  for (utf8proc_ssize_t i = 0; i < count; ++i) {
    const auto part = parts[static_cast<std::size_t>(i)];
    if (part < 0x0300 || part > 0x036F) append(part, out);
  }
  out += '\0';
  out += fold;
}

std::string foldKey(std::string_view text) {
  std::string out;
  foldKeyInto(text, out);
  return out;
}

std::string orderKey(std::string_view text) {
  std::string out;
  orderKeyInto(text, out);
  return out;
}

}  // namespace kv
