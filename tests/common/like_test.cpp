// SPDX-License-Identifier: Apache-2.0
#include "common/like.h"

#include <gtest/gtest.h>

namespace kv {
namespace {

struct Case {
  const char* pattern;
  const char* text;
  bool matches;
};

TEST(Like, PercentAndUnderscore) {
  const Case cases[] = {
      {"abc", "ABC", true},
      {"abc", "abcd", false},
      {"%b%", "abc", true},
      {"%b%", "b", true},
      {"%b%", "", false},
      {"", "", true},
      {"%", "", true},
      {"%%", "x", true},
      {"a%", "a", true},
      {"_", "ä", true},
      {"_", "", false},
      {"a_c", "abbc", false},
      {"%a_c%", "xxabaac--", true},
      {"%ab%cd%", "ab ab cd", true},
      {"%ab%cd", "ab cd cd", true},
      {"%ab%cd", "ab cd ce", false},
      {"%aab", "aaab", true},
      {"Ä%", "ärger", true},
      {"*", "abc", false},
      {"?", "a", false},
      {"a*", "a*", true},
  };
  for (const auto& c : cases)
    EXPECT_EQ(LikePattern(c.pattern).matches(c.text), c.matches) << c.pattern << " and " << c.text;
}

TEST(Like, Lists) {
  const Case cases[] = {
      {"[abc]x", "bx", true},       {"[a-c]", "C", true},   {"[a-c]", "d", false},
      {"[!a-c]", "d", true},        {"[!a-c]", "B", false}, {"[!a-c]", "", false},
      {"[%]", "%", true},           {"[%]", "x", false},    {"[_]", "_", true},
      {"[[]", "[", true},           {"[-a]", "-", true},    {"[a-]", "-", true},
      {"[a-]", "b", false},         {"[!]x", "!x", true},   {"a[]b", "ab", true},
      {"a[b", "a[b", true},         {"[ä-ü]", "Ö", true},   {"%[0-9]%", "part 7", true},
      {"%[0-9]", "part 7a", false},
  };
  for (const auto& c : cases)
    EXPECT_EQ(LikePattern(c.pattern).matches(c.text), c.matches) << c.pattern << " and " << c.text;
}

TEST(Like, TheOtherWildcardsOnDemand) {
  const LikePattern pattern("a?c*", Wildcards::AsteriskQuestion);
  EXPECT_TRUE(pattern.matches("abcdef"));
  EXPECT_FALSE(pattern.matches("ac"));
  EXPECT_FALSE(LikePattern("a%", Wildcards::AsteriskQuestion).matches("abc"));
}

TEST(Like, LongHopelessPatternsEndSoon) {
  std::string pattern;
  for (int i = 0; i < 60; ++i) pattern += "%a_";
  const std::string text(20000, 'a');
  EXPECT_FALSE(LikePattern(pattern + "b").matches(text));
}

}  // namespace
}  // namespace kv
