// SPDX-License-Identifier: Apache-2.0
#include "common/text.h"

#include <gtest/gtest.h>

namespace kv {
namespace {

TEST(Text, IncrementReplacesTheDigitsAtTheEnd) {
  EXPECT_EQ(incrementSuffix("0001"), "2");
  EXPECT_EQ(incrementSuffix("A-09"), "A-10");
  EXPECT_EQ(incrementSuffix("A"), "A1");
  EXPECT_EQ(incrementSuffix(""), "1");
  EXPECT_EQ(incrementSuffix("000"), "1");
  EXPECT_EQ(incrementSuffix("9"), "10");
  EXPECT_EQ(incrementSuffix("12x99"), "12x100");
}

TEST(Text, IncrementCountsTailsOfAnyLength) {
  EXPECT_EQ(incrementSuffix("99999999999999999999999999999999"),
            "100000000000000000000000000000000");
  EXPECT_EQ(incrementSuffix("copy 12345678901234567890123"), "copy 12345678901234567890124");
}

TEST(Text, TrimTakesBlanksOnly) {
  EXPECT_EQ(trimmed("  a b  "), "a b");
  EXPECT_EQ(trimmed("   "), "");
  EXPECT_EQ(trimmed("\ta "), "\ta");
}

TEST(Text, EqualWithoutRegardToCaseOfAnyLetter) {
  EXPECT_TRUE(equalNoCase("RevisionID", "revisionid"));
  EXPECT_TRUE(equalNoCase("ÄRGER", "ärger"));
  EXPECT_TRUE(equalNoCase("\xE2\x84\xAA", "k")) << "the Kelvin sign";
  EXPECT_FALSE(equalNoCase("a", "á"));
  EXPECT_FALSE(equalNoCase("ab", "abc"));
}

TEST(Text, OnlyWellFormedTextWithoutZeroIsStorable) {
  EXPECT_TRUE(isStorableText("plain"));
  EXPECT_TRUE(isStorableText("ä€\xF0\x9F\x98\x80"));
  EXPECT_FALSE(isStorableText(std::string_view("a\0b", 3)));
  EXPECT_FALSE(isStorableText("\xC3"));
  EXPECT_FALSE(isStorableText("\xC0\xAF")) << "overlong";
  EXPECT_FALSE(isStorableText("\xED\xA0\x80")) << "a surrogate";
  EXPECT_FALSE(isStorableText("\xF4\x90\x80\x80")) << "beyond U+10FFFF";
  EXPECT_FALSE(isStorableText("caf\xE9")) << "Latin-1";
}

TEST(Text, CharactersAreCodePoints) {
  EXPECT_EQ(characterCount("ä€x"), 3U);
  EXPECT_EQ(byteOffset("ä€x", 2), 5U);
  EXPECT_EQ(byteOffset("ä€x", 9), 6U);
}

TEST(Text, ApostrophesAreDoubled) {
  EXPECT_EQ(doubledQuotes("O'Brien's"), "O''Brien''s");
  EXPECT_EQ(doubledQuotes("\"x\""), "\"x\"");
}

}  // namespace
}  // namespace kv
