// SPDX-License-Identifier: Apache-2.0
#include "data/sql_text.h"

#include <gtest/gtest.h>

#include "recordset/database.h"
#include "support/error_check.h"
#include "support/test_register.h"

namespace kv {
namespace {

TEST(JoinedValue, InQuotesEveryRunOfApostrophesIsEven) {
  for (const char* good : {"", "User1", "O''Brien", "''", "a''''b", "x'' or ''a''=''a",
                           "say \"hi\"", "a;b--c", "[x] #1# ?"})
    EXPECT_EQ(inQuotes(good), good);
  for (const char* bad : {"O'Brien", "'", "'''", "x' or 'a'='a", "a''b'", "'a''b", "caf\xE9"})
    EXPECT_RAISES(kSyntax, (void)inQuotes(bad));
  EXPECT_EQ(test::descriptionOf([] { (void)inQuotes("O'Brien"); }),
            "Syntax error (missing operator) in query expression. (position 2: ''Brien')");
}

TEST(JoinedValue, WhatAValueInQuotesSays) {
  for (const auto& [value, said] : {std::pair{"", ""},
                                    {"User1", "User1"},
                                    {"O''Brien", "O'Brien"},
                                    {"''", "'"},
                                    {"a''''b", "a''b"},
                                    {"''x''", "'x'"}})
    EXPECT_EQ(outOfQuotes(value), said);
  for (const char* refused : {"O'Brien", "'"}) EXPECT_EQ(outOfQuotes(refused), refused);
}

TEST(JoinedValue, OutsideQuotesItIsOneNumber) {
  for (const char* good : {"0", "12", "-12", "+3", "1.5", "1e3", ".5", "5.", " 1", "1 ", "- 1",
                           "\t1\r\n", "2147483648"})
    EXPECT_EQ(asNumber(good), good);
  for (const char* bad : {"",
                          " ",
                          "-",
                          "x",
                          "1 or 1=1",
                          "1;2",
                          "--1",
                          "+-1",
                          "1-1",
                          "1 1",
                          "0x10",
                          "(1)",
                          "1,5",
                          "1e",
                          "1e999",
                          "Null",
                          "inf",
                          "nan",
                          "'1'",
                          "#1/1/2001#",
                          "\xC2\xA0"
                          "1",
                          "1\xE9"})
    EXPECT_RAISES(kSyntax, (void)asNumber(bad)) << bad;
}

TEST(JoinedValue, BetweenNumberSignsItIsOneDate) {
  for (const char* good : {"3/9/2001", "2001-03-09", "25/7/2018", "20 Jan 2001", "1/2/99",
                           "2:05 PM", "2001-03-09 14:05", "March 9, 2001", " 3/9/2001 "})
    EXPECT_EQ(asDate(good), good);
  for (const char* bad : {"", " ", "5", "soon", "13/13/2001", "3/9/2001# or #1/1/2001", "#", "##",
                          "3/9/2001#", "'", "2:75 PM", "3/9/2001 x"})
    EXPECT_RAISES(kSyntax, (void)asDate(bad)) << bad;
}

// Neither more nor less than the dialect takes: with the value in it, a statement has the shape
// that it has with any other number.
TEST(JoinedValue, WhatPassesIsWhatTheDialectReads) {
  const test::TestRegister reg;
  const auto shapeWith = [&](const std::string& value) {
    std::shared_ptr<StatementShape> shape;
    (void)test::errorOf([&] {
      shape =
          reg.connection()->database()->prepare("Select * From Users Where ID = " + value).shape;
    });
    return shape;
  };
  const auto whole = shapeWith("7");
  const auto real = shapeWith("7.5");
  ASSERT_TRUE(whole && real);
  for (const char* value :
       {"1",          " 1",       "1 ",  "\t1\n",      ".5",   "5.",   "1e3", "1E-3",
        "2147483648", "1 or 1=1", "1;2", "1 1",        "0x10", "(1)",  "1,5", "1e",
        "Null",       "'1'",      "",    "#1/1/2001#", "1#",   "1e999"}) {
    const auto shape = shapeWith(value);
    const bool isNumber = shape != nullptr && (shape == whole || shape == real);
    EXPECT_EQ(test::numberOf([&] { (void)asNumber(value); }), isNumber ? 0 : kSyntax) << value;
  }
}

TEST(JoinedValue, OrOneColumnName) {
  for (const char* good : {"User00", "_x", "[two words]", "Größe"})
    EXPECT_EQ(asColumnName(good), good);
  for (const char* bad : {"", "User00 = 'x', User01", "1x", "a b", "a.b", "[a]b]", "[]", "a'b"})
    EXPECT_RAISES(kSyntax, (void)asColumnName(bad));
}

TEST(JoinedValue, WhatPassesNeverChangesTheShape) {
  const test::TestRegister reg;
  const auto& database = *reg.connection()->database();
  (void)database;
  const auto plain = reg.connection()->database()->prepare(
      "Select * From Users Where UserID = 'x' and UserName = 'y'");
  for (const char* value :
       {"", "''", "a''''b", "x'' or ''a''=''a", "\"", "#", "[", "{", "?", "--", ";"}) {
    const auto joined = reg.connection()->database()->prepare(
        "Select * From Users Where UserID = '" + inQuotes(value) + "' and UserName = '" +
        inQuotes(value) + "'");
    EXPECT_EQ(joined.shape, plain.shape) << value;
  }
}

}  // namespace
}  // namespace kv
