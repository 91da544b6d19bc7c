// SPDX-License-Identifier: Apache-2.0
#include "common/like.h"

#include <fmt/format.h>

#include <cstdint>

#include "common/text.h"
#include "common/text_key.h"

namespace kv {

namespace {

// Decodes the code point at `at` of well-formed UTF-8 and moves behind it.
char32_t next(std::string_view text, std::size_t& at) {
  const auto byte = [&](std::size_t i) {
    return static_cast<char32_t>(static_cast<unsigned char>(i < text.size() ? text[i] : '\0'));
  };
  const char32_t c = byte(at);
  if (c < 0x80) {
    ++at;
    return c;
  }
  const int tail = c >= 0xF0 ? 3 : c >= 0xE0 ? 2 : 1;
  char32_t value = c & (0x3FU >> static_cast<unsigned>(tail));
  for (int i = 1; i <= tail; ++i)
    value = (value << 6U) | (byte(at + static_cast<std::size_t>(i)) & 0x3FU);
  at += static_cast<std::size_t>(tail) + 1;
  return value;
}

}  // namespace

LikePattern::LikePattern(std::string_view pattern, Wildcards wildcards) {
  const char any = wildcards == Wildcards::PercentUnderscore ? '%' : '*';
  const char one = wildcards == Wildcards::PercentUnderscore ? '_' : '?';
  const std::string text = foldKey(pattern);
  std::string literal;
  const auto flush = [&] {
    if (!literal.empty()) elements_.push_back({.kind = Kind::Literal, .literal = literal});
    literal.clear();
  };
  std::size_t at = 0;
  while (at < text.size()) {
    const char c = text[at];
    const auto close = c == '[' ? text.find(']', at + 1) : std::string::npos;
    if (close != std::string::npos) {
      std::size_t in = at + 1;
      Element list{.kind = Kind::List};
      if (in < close && text[in] == '!') {
        list.negated = true;
        ++in;
      }
      while (in < close) {
        const char32_t low = next(text, in);
        char32_t high = low;
        if (in + 1 < close && text[in] == '-') {
          ++in;
          high = next(text, in);
        }
        list.ranges.push_back({low, high});
      }
      at = close + 1;
      if (list.ranges.empty() && !list.negated) continue;
      if (list.ranges.empty()) {  // [!] is an exclamation mark
        literal += '!';
        continue;
      }
      flush();
      elements_.push_back(std::move(list));
      continue;
    }
    if (c == any || c == one) {
      flush();
      if (c == one)
        elements_.push_back({.kind = Kind::One});
      else if (elements_.empty() || elements_.back().kind != Kind::Any)
        elements_.push_back({.kind = Kind::Any});
    } else {
      literal += c;
    }
    ++at;
  }
  flush();
}

bool LikePattern::listHolds(const Element& element, char32_t c) {
  for (const auto& range : element.ranges)
    if (c >= range.low && c <= range.high) return !element.negated;
  return element.negated;
}

bool LikePattern::matches(std::string_view text) const { return matchesFolded(foldKey(text)); }

bool LikePattern::matchesFolded(std::string_view folded) const {
  std::size_t element = 0;
  std::size_t at = 0;
  // Where to go on when a match fails: behind the last "any", with one character more given to it.
  std::size_t anyElement = elements_.size() + 1;
  std::size_t anyAt = 0;
  for (;;) {
    bool good = false;
    if (element == elements_.size()) {
      if (at == folded.size()) return true;
    } else {
      const Element& e = elements_[element];
      switch (e.kind) {
        case Kind::Any:
          anyElement = element++;
          anyAt = at;
          if (element == elements_.size()) return true;
          if (elements_[element].kind == Kind::Literal) {  // jump to where it can go on
            const auto found = folded.find(elements_[element].literal, at);
            if (found == std::string_view::npos) return false;
            anyAt = at = found;
          }
          continue;
        case Kind::Literal:
          if (folded.substr(at, e.literal.size()) == e.literal) {
            at += e.literal.size();
            ++element;
            good = true;
          }
          break;
        case Kind::One:
        case Kind::List:
          if (at < folded.size()) {
            const char32_t c = next(folded, at);
            if (e.kind == Kind::One || listHolds(e, c)) {
              ++element;
              good = true;
            }
          }
          break;
      }
    }
    if (good) continue;
    if (anyElement > elements_.size() || anyAt >= folded.size()) return false;
    (void)next(folded, anyAt);
    at = anyAt;
    element = anyElement + 1;
    if (element < elements_.size() && elements_[element].kind == Kind::Literal) {
      const auto found = folded.find(elements_[element].literal, at);
      if (found == std::string_view::npos) return false;
      anyAt = at = found;
    }
  }
}

std::string LikePattern::expression() const {
  // Without an anchor at an end that may be any text, engines search instead of matching.
  const bool openStart = !elements_.empty() && elements_.front().kind == Kind::Any;
  const bool openEnd = !elements_.empty() && elements_.back().kind == Kind::Any;
  std::string out = openStart ? "" : "^";
  for (std::size_t i = 0; i < elements_.size(); ++i) {
    const Element& e = elements_[i];
    switch (e.kind) {
      case Kind::Any:
        if (i > 0 && i + 1 < elements_.size()) out += ".*";
        break;
      case Kind::One: out += '.'; break;
      case Kind::Literal:
        for (const char c : e.literal) {
          if (isAscii({&c, 1}) && !isAsciiLetter(c) && !isDigit(c)) out += '\\';
          out += c;
        }
        break;
      case Kind::List: {
        std::string ranges;
        for (const auto& range : e.ranges)
          if (range.low <= range.high)
            ranges += fmt::format("\\U{:08X}-\\U{:08X}", static_cast<std::uint32_t>(range.low),
                                  static_cast<std::uint32_t>(range.high));
        if (!ranges.empty())
          out += (e.negated ? "[^" : "[") + ranges + "]";
        else
          out += e.negated ? "." : "(?!.).";  // outside nothing, or never
        break;
      }
    }
  }
  return openEnd ? out : out + "$";
}

}  // namespace kv
