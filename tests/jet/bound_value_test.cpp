// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include "jet/emit/emitted.h"
#include "jet/syntax/lexer.h"
#include "support/error_check.h"

namespace kv::jet {
namespace {

std::string shown(const SqlValue& value) {
  if (const auto* whole = std::get_if<std::int64_t>(&value)) return std::to_string(*whole);
  if (const auto* real = std::get_if<double>(&value)) return "real " + std::to_string(*real);
  if (const auto* text = std::get_if<std::string>(&value)) return "'" + *text + "'";
  if (const auto* date = std::get_if<Date>(&value)) return "#" + isoText(*date) + "#";
  return "Null";
}

// What a literal becomes in a column of a type; "error N" where it is refused.
std::string assigned(const std::string& literal, ColumnType type, bool negative = false) {
  Lexed lexed;
  lex(literal, lexed);
  const ColumnInfo column{.name = "C", .type = type, .size = 5};
  const ParamUse use{
      .form = ParamUse::Form::Assign, .literal = 0, .negative = negative, .column = &column};
  std::string out;
  const auto error = test::errorOf([&] { out = shown(boundValue(use, lexed.literals, literal)); });
  return error ? "error " + std::to_string(error->number()) : out;
}

TEST(AssignedLiteral, TakesTheFormOfItsColumn) {
  struct Case {
    const char* literal;
    ColumnType type;
    const char* stored;
  };
  const Case cases[] = {
      {"5", ColumnType::Boolean, "-1"},
      {"0", ColumnType::Boolean, "0"},
      {"'x'", ColumnType::Boolean, "error -2147217913"},
      {"2.5", ColumnType::Int16, "2"},
      {"3.5", ColumnType::Int16, "4"},
      {"40000", ColumnType::Int16, "error -2147217833"},
      {"'12'", ColumnType::Int32, "12"},
      {"'12a'", ColumnType::Int32, "error -2147217913"},
      {"3000000000", ColumnType::Int32, "error -2147217833"},
      {"1e39", ColumnType::Single, "error -2147217833"},
      {"0.5", ColumnType::Single, "real 0.500000"},
      {"7", ColumnType::Double, "real 7.000000"},
      {"'1e999'", ColumnType::Double, "error -2147217913"},
      {"#3/9/2001#", ColumnType::Double, "real 36959.000000"},
      {"#3/9/2001#", ColumnType::Date, "#2001-03-09#"},
      {"'3/9/2001'", ColumnType::Date, "#2001-03-09#"},
      {"36959.5", ColumnType::Date, "#2001-03-09 12:00:00#"},
      {"'soon'", ColumnType::Date, "error -2147217913"},
      {"9e9", ColumnType::Date, "error -2147217833"},
      {"'abcde'", ColumnType::Text, "'abcde'"},
      {"'abcdef'", ColumnType::Text, "error -2147467259"},
      {"'äöüßé'", ColumnType::Text, "'äöüßé'"},
      {"'abcdef'", ColumnType::Memo, "'abcdef'"},
      {"12", ColumnType::Text, "'12'"},
      {"1.5", ColumnType::Text, "'1.5'"},
      {"#3/9/2001#", ColumnType::Memo, "'3/9/2001'"},
  };
  for (const auto& c : cases)
    EXPECT_EQ(assigned(c.literal, c.type), c.stored) << c.literal << " in " << typeName(c.type);
  EXPECT_EQ(assigned("5", ColumnType::Int32, true), "-5");
  EXPECT_EQ(assigned("5", ColumnType::Text, true), "'-5'");
}

TEST(BoundValue, KeysOfText) {
  Lexed lexed;
  lex("'ÉTUDE'", lexed);
  EXPECT_EQ(shown(boundValue({.form = ParamUse::Form::Fold}, lexed.literals, {})), "'étude'");
  EXPECT_EQ(shown(boundValue({.form = ParamUse::Form::OrderBase}, lexed.literals, {})), "'etude'");
  EXPECT_EQ(boundValue({.form = ParamUse::Form::Order}, lexed.literals, {}),
            SqlValue(std::string("etude\0étude", 12)));
}

TEST(BoundValue, TheLesserAndTheGreaterOfTwo) {
  const auto bound = [](const std::string& literals, bool greater) {
    Lexed lexed;
    lex(literals, lexed);
    return shown(boundValue({.literal = 0, .other = 1, .greater = greater}, lexed.literals, {}));
  };
  EXPECT_EQ(bound("5 1", false), "1");
  EXPECT_EQ(bound("5 1", true), "5");
  EXPECT_EQ(bound("1 2.5", true), "real 2.500000");
  EXPECT_EQ(bound("'b' 'É'", false), "'b'");
  EXPECT_EQ(bound("'b' 'á'", false), "'á'");
  EXPECT_EQ(bound("#1/1/2002# #1/1/2001#", false), "#2001-01-01#");
}

}  // namespace
}  // namespace kv::jet
