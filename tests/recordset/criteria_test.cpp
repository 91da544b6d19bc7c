// SPDX-License-Identifier: Apache-2.0
#include "recordset/criteria.h"

#include <gtest/gtest.h>

#include "support/error_check.h"

namespace kv {
namespace {

const std::vector<SourceColumn> kColumns = {{.name = "Name", .type = ColumnType::Text, .size = 50},
                                            {.name = "Number", .type = ColumnType::Int32},
                                            {.name = "Day", .type = ColumnType::Date},
                                            {.name = "Yes", .type = ColumnType::Boolean},
                                            {.name = "Two Words", .type = ColumnType::Memo}};

bool holds(const char* criteria, const Variant& value) {
  return parseComparison(criteria, kColumns).holds(value);
}

TEST(Comparison, HoldsForTheValuesItMeans) {
  EXPECT_TRUE(holds("Name = 'ab'", "AB"));
  EXPECT_FALSE(holds("Name = 'ab'", "abc"));
  EXPECT_TRUE(holds("Name <> 'ab'", "abc"));
  EXPECT_TRUE(holds("Name = 'O''Brien'", "O'Brien"));
  EXPECT_TRUE(holds("Name > 'etude'", "étude"));
  EXPECT_TRUE(holds("Name < 'f'", "étude"));
  EXPECT_TRUE(holds("[Two Words] >= \"x\"", "X"));
  EXPECT_TRUE(holds("number <= -3", -3));
  EXPECT_TRUE(holds("Number = '12'", 12));
  EXPECT_FALSE(holds("Number > 3.5", 3));
  EXPECT_TRUE(holds("Day = #3/9/2001#", Date(36959)));
  EXPECT_TRUE(holds("Day > '2001-03-08'", Date(36959)));
  EXPECT_TRUE(holds("Yes = True", true));
  EXPECT_TRUE(holds("Yes <> 0", true));
  EXPECT_FALSE(holds("Yes = 1", true)) << "True is -1";
}

TEST(Comparison, NullEqualsNullAlone) {
  EXPECT_TRUE(holds("Name = Null", Null));
  EXPECT_FALSE(holds("Name = Null", ""));
  EXPECT_TRUE(holds("Name <> Null", "x"));
  EXPECT_FALSE(holds("Name = 'x'", Null));
  EXPECT_TRUE(holds("Name <> 'x'", Null));
  EXPECT_FALSE(holds("Name < 'x'", Null));
  EXPECT_RAISES(kBadArgument, (void)parseComparison("Name > Null", kColumns));
}

TEST(Comparison, LikeKnowsBothSetsOfWildcards) {
  EXPECT_TRUE(holds("Name Like 'A*'", "abc"));
  EXPECT_TRUE(holds("Name Like '%b%'", "abc"));
  EXPECT_TRUE(holds("Name Like '*b?'", "abc"));
  EXPECT_FALSE(holds("Name Like 'b%'", "abc"));
  EXPECT_TRUE(holds("Number Like '1%'", 12));
  EXPECT_RAISES(kBadArgument, (void)parseComparison("Name Like 5", kColumns));
}

TEST(Comparison, RefusesWhatItCannotMean) {
  for (const char* bad :
       {"Number = 'x'", "Day = 'soon'", "Name == 'x'", "Name = 'x' 'y'", "5 = Number",
        "Name = -'x'", "Name In ('x')", "Name = {x}", "Name Not Like 'x'"})
    EXPECT_RAISES(kBadArgument, (void)parseComparison(bad, kColumns));
}

TEST(Criteria, AndBindsTighterThanOr) {
  const Criteria c = parseCriteria("Number = 1 or Number = 2 and Name = 'x'", kColumns);
  ASSERT_EQ(c.kind, Criteria::Kind::Or);
  ASSERT_EQ(c.parts.size(), 2U);
  EXPECT_EQ(c.parts[0].kind, Criteria::Kind::Comparison);
  EXPECT_EQ(c.parts[1].kind, Criteria::Kind::And);
}

TEST(Criteria, ParenthesesGroup) {
  const Criteria c = parseCriteria("(Number = 1 or Number = 2) and Name = 'x'", kColumns);
  ASSERT_EQ(c.kind, Criteria::Kind::And);
  EXPECT_EQ(c.parts[0].kind, Criteria::Kind::Or);
  for (const char* bad : {"(Number = 1", "Number = 1)", "Number = 1 or", "and Number = 1", "()"})
    EXPECT_RAISES(kBadArgument, (void)parseCriteria(bad, kColumns));
  EXPECT_RAISES(kBadArgument,
                (void)parseCriteria(std::string(100000, '(') + "Number = 1", kColumns));
}

TEST(Sort, ListsColumnsAndDirections) {
  const auto sort = parseSort("Name, [Two Words] DESC, number asc", kColumns);
  ASSERT_EQ(sort.size(), 3U);
  EXPECT_EQ(sort[1].column, 4U);
  EXPECT_TRUE(sort[1].descending);
  EXPECT_FALSE(sort[2].descending);
  EXPECT_RAISES(kNoSuchItem, (void)parseSort("Colour", kColumns));
  EXPECT_RAISES(kBadArgument, (void)parseSort("Name,", kColumns));
  EXPECT_RAISES(kBadArgument, (void)parseSort("Name sideways", kColumns));
}

}  // namespace
}  // namespace kv
