// SPDX-License-Identifier: Apache-2.0
// Pattern matching of the SQL dialect's Like.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace kv {

// Which characters stand for "any text" and "any one character". The sets exclude each other: under
// one, the other's characters are ordinary.
enum class Wildcards { PercentUnderscore, AsteriskQuestion };

// A pattern, read once and matched many times. Letters match without regard to case (both sides are
// folded). [abc], [a-c] and [!a-c] match one character of, or outside, a list; a wildcard or [ in a
// list is itself, which is the only way to escape one; a hyphen first or last in a list is itself.
// A [ that no ] follows is an ordinary character, [] matches nothing at all and is passed over.
class LikePattern {
 public:
  explicit LikePattern(std::string_view pattern,
                       Wildcards wildcards = Wildcards::PercentUnderscore);

  [[nodiscard]] bool matches(std::string_view text) const;
  // As matches, for text that is folded already.
  [[nodiscard]] bool matchesFolded(std::string_view folded) const;
  // The same pattern as a regular expression for folded text, in the syntax of PostgreSQL (an
  // advanced one: \Uxxxxxxxx for a character, look-ahead).
  [[nodiscard]] std::string expression() const;

 private:
  enum class Kind { Literal, One, Any, List };
  struct Range {
    char32_t low;
    char32_t high;
  };
  struct Element {
    Kind kind;
    std::string literal = {};  // folded text, for Literal
    bool negated = false;
    std::vector<Range> ranges = {};
  };

  [[nodiscard]] static bool listHolds(const Element& element, char32_t c);

  std::vector<Element> elements_;
};

}  // namespace kv
