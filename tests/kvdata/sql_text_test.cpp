#include "kvdata/sql_text.h"

#include <gtest/gtest.h>

#include "kvdata/recordset/database.h"
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
  for (const char* good : {"0", "12", "-12", "+3", "1.5", "1e3"}) EXPECT_EQ(asNumber(good), good);
  for (const char* bad :
       {"", "x", "1 or 1=1", "1;2", "--1", "1-1", "0x10", "(1)", "1 ", "Null", "inf", "nan"})
    EXPECT_RAISES(kSyntax, (void)asNumber(bad));
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
