// SPDX-License-Identifier: Apache-2.0
#include "jet/syntax/lexer.h"

#include <gtest/gtest.h>

#include "support/error_check.h"

namespace kv::jet {
namespace {

std::string shapeOf(const std::string& text) {
  Lexed lexed;
  lex(text, lexed);
  return std::string(lexed.shape);
}

TEST(Lexer, StatementsThatDifferInValuesHaveOneShape) {
  const std::string shape = shapeOf("Select * From Documents Where DocumentID = 'a' and ID = 5");
  EXPECT_EQ(shapeOf("Select *  From Documents\r\n\tWhere DocumentID='O''Brien' and ID=77"), shape);
}

TEST(Lexer, ValuesOfOtherKindsHaveOtherShapes) {
  const std::string number = shapeOf("Select * From T Where a = 5");
  EXPECT_NE(shapeOf("Select * From T Where a = '5'"), number);
  EXPECT_NE(shapeOf("Select * From T Where a = 5.5"), number);
  EXPECT_NE(shapeOf("Select * From T Where a = #1/1/2001#"), number);
  EXPECT_NE(shapeOf("Select * From T Where a = 5000000000"), number) << "beyond a 32-bit integer";
}

TEST(Lexer, NamesAreNotRunTogether) {
  EXPECT_NE(shapeOf("Select a b From T"), shapeOf("Select ab From T"));
  EXPECT_NE(shapeOf("Select [a b] From T"), shapeOf("Select a b From T"));
}

TEST(Lexer, LiteralsThatShapeTheStatementStayInIt) {
  EXPECT_NE(shapeOf("Select Top 5 * From T"), shapeOf("Select Top 6 * From T"));
  EXPECT_NE(shapeOf("Select * From T Order By 1"), shapeOf("Select * From T Order By 2"));
  EXPECT_NE(shapeOf("Select a From T Group By a, 'x'"), shapeOf("Select a From T Group By a, 'y'"));
  EXPECT_EQ(shapeOf("Select a From T Group By a Having Count(*) > 1"),
            shapeOf("Select a From T Group By a Having Count(*) > 2"));
}

TEST(Lexer, LiteralsHaveTheirValues) {
  Lexed lexed;
  lex("'O''Brien' \"say \"\"x\"\"\" 42 4.5 .5 1e3 #3/9/2001# 'a''' ''", lexed);
  ASSERT_EQ(lexed.literals.size(), 9U);
  EXPECT_EQ(std::get<std::string>(lexed.literals[0].value), "O'Brien");
  EXPECT_EQ(std::get<std::string>(lexed.literals[1].value), "say \"x\"");
  EXPECT_EQ(std::get<std::int64_t>(lexed.literals[2].value), 42);
  EXPECT_EQ(std::get<double>(lexed.literals[3].value), 4.5);
  EXPECT_EQ(std::get<double>(lexed.literals[4].value), 0.5);
  EXPECT_EQ(std::get<double>(lexed.literals[5].value), 1000);
  EXPECT_EQ(isoText(std::get<Date>(lexed.literals[6].value)), "2001-03-09");
  EXPECT_EQ(std::get<std::string>(lexed.literals[7].value), "a'");
  EXPECT_EQ(std::get<std::string>(lexed.literals[8].value), "");
}

TEST(Lexer, NumbersMayBeginWithTheirPointAndHaveAnExponent) {
  Lexed lexed;
  lex(".5e3 1.5E-2 1e-999", lexed);
  ASSERT_EQ(lexed.literals.size(), 3U);
  EXPECT_EQ(std::get<double>(lexed.literals[0].value), 500);
  EXPECT_EQ(std::get<double>(lexed.literals[1].value), 0.015);
  EXPECT_EQ(std::get<double>(lexed.literals[2].value), 0);
  EXPECT_RAISES(kSyntax, lex("Select 1e999", lexed));
}

TEST(Lexer, TextThatIsNotUtf8IsRefusedWhereItBegins) {
  Lexed lexed;
  const auto error = test::errorOf([&] { lex("Select '\xC3\xA9\xE2\x82\xAC\xFF'", lexed); });
  ASSERT_TRUE(error);
  EXPECT_EQ(error->number(), kSyntax);
  EXPECT_EQ(error->where().offset, 13U);
}

TEST(Lexer, WhatLooksLikeSyntaxInALiteralIsText) {
  Lexed lexed;
  lex("Select '? # -- True [x] ;' From T", lexed);
  EXPECT_EQ(std::get<std::string>(lexed.literals[0].value), "? # -- True [x] ;");
  EXPECT_EQ(lexed.tokens.size(), 5U);
}

TEST(Lexer, ManyLiteralsAreNotLifted) {
  std::string text = "Select * From T Where a In (0";
  for (std::size_t i = 0; i < kMostLifted; ++i) text += ", 1";
  Lexed lexed;
  lex(text + ")", lexed);
  EXPECT_FALSE(lexed.lifted);
  EXPECT_TRUE(lexed.shape.empty());
}

TEST(Lexer, RefusesWhatIsNoToken) {
  struct Case {
    std::string text;
    const char* description;
  };
  const Case cases[] = {
      {"Select {x}", "Syntax error (missing operator) in query expression. (position 8: '{')"},
      {"Select 'abc", "Syntax error in string in query expression. (position 8: ''abc')"},
      {"Select \"abc'", "Syntax error in string in query expression. (position 8: '\"abc'')"},
      {"Select #nonsense#", "Syntax error in date in query expression. (position 8: '#nonsense#')"},
      {"Select #3/9/2001", "Syntax error in date in query expression. (position 8: '#3/9/2001')"},
      {"Select [abc", "Invalid bracketing of name. (position 8: '[abc')"},
      {"Select [ abc]", "Invalid bracketing of name. (position 8: '[ abc]')"},
      {"Select []", "Invalid bracketing of name. (position 8: '[]')"},
      {"Select 12abc", "Syntax error (missing operator) in query expression. (position 8: '12a')"},
      {std::string("Select \0", 8),
       "The statement is not well-formed UTF-8 text. (position 8: end of statement)"},
      {"Select 'caf\xE9'",
       "The statement is not well-formed UTF-8 text. (position 12: end of statement)"},
      {"Select @x", "Syntax error (missing operator) in query expression. (position 8: '@')"},
      {"Select \x01", "Syntax error (missing operator) in query expression. (position 8: '\x01')"},
  };
  for (const auto& c : cases) {
    Lexed lexed;
    const auto error = test::errorOf([&] { lex(c.text, lexed); });
    ASSERT_TRUE(error) << c.text;
    EXPECT_EQ(error->number(), kSyntax) << c.text;
    EXPECT_EQ(error->description(), c.description);
  }
}

TEST(Lexer, PositionsCountCharactersNotBytes) {
  Lexed lexed;
  const auto error = test::errorOf([&] { lex("Select 'äöü', {", lexed); });
  EXPECT_EQ(error->description(),
            "Syntax error (missing operator) in query expression. (position 15: '{')");
  EXPECT_EQ(error->where().offset, 17U);
}

}  // namespace
}  // namespace kv::jet
