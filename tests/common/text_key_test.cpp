// SPDX-License-Identifier: Apache-2.0
#include "common/text_key.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

namespace kv {
namespace {

TEST(FoldKey, IgnoresCaseAndKeepsAccents) {
  EXPECT_EQ(foldKey("Straße ÄÖÜ"), "straße äöü");
  EXPECT_NE(foldKey("e"), foldKey("é"));
  EXPECT_EQ(foldKey("\xE2\x84\xAA"), "k") << "the Kelvin sign";
}

TEST(FoldKey, EverySigmaIsTheSame) { EXPECT_EQ(foldKey("ΟΔΟΣ"), foldKey("οδος")); }

TEST(FoldKey, TheDottedCapitalIHasItsRootLowerCase) {
  EXPECT_EQ(foldKey("\xC4\xB0"), "i\xCC\x87");
  EXPECT_EQ(foldKey("I"), "i") << "not the Turkish rule";
}

TEST(OrderKey, AccentedLettersStandBesideThePlainOnes) {
  std::vector<std::string> words = {"zebra",   "étude", "Eton",  "etude", "eta",
                                    "ETUDE 2", "Zoe",   "ärmel", "arm"};
  std::sort(words.begin(), words.end(),
            [](const auto& a, const auto& b) { return orderKey(a) < orderKey(b); });
  EXPECT_EQ(words, (std::vector<std::string>{"arm", "ärmel", "eta", "Eton", "etude", "étude",
                                             "ETUDE 2", "zebra", "Zoe"}));
}

TEST(OrderKey, EqualExactlyWhereTheFoldKeysAre) {
  EXPECT_EQ(orderKey("ABC"), orderKey("abc"));
  EXPECT_NE(orderKey("e"), orderKey("é"));
}

// The pair of parts that the key stands for, written out.
std::pair<std::string, std::string> parts(const std::string& text) {
  const std::string key = orderKey(text);
  const auto zero = key.find('\0');
  return zero == std::string::npos ? std::pair{key, key}
                                   : std::pair{key.substr(0, zero), key.substr(zero + 1)};
}

TEST(OrderKey, OneByteStringOrdersAsItsTwoPartsDo) {
  const std::vector<std::string> texts = {"",
                                          "a",
                                          "A",
                                          "á",
                                          "a\xCC\x81",
                                          "ab",
                                          "áb",
                                          "a\x01",
                                          "é\x01",
                                          "e\x01z",
                                          "e",
                                          "é",
                                          "\xE2\x84\xAA",
                                          "k",
                                          "\xE2\x8C\xA9",
                                          "\xE3\x80\x88",
                                          "가",
                                          "\xE1\x84\x80\xE1\x85\xA1"};
  for (const auto& a : texts)
    for (const auto& b : texts)
      EXPECT_EQ(orderKey(a) < orderKey(b), parts(a) < parts(b)) << a << " and " << b;
}

TEST(OrderKey, MarksThatAreNotRemovedComeInCanonicalOrder) {
  // Two Hebrew points, in both orders: the same text by canonical equivalence.
  EXPECT_EQ(parts("ש\xD6\xBC\xD7\x81").first, parts("ש\xD7\x81\xD6\xBC").first);
}

TEST(Keys, BuffersAreReusedWithoutLeavingAnything) {
  std::string out = "something long that was here before";
  foldKeyInto("AB", out);
  EXPECT_EQ(out, "ab");
  orderKeyInto("É", out);
  orderKeyInto("x", out);
  EXPECT_EQ(out, "x");
}

}  // namespace
}  // namespace kv
