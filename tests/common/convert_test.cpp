// SPDX-License-Identifier: Apache-2.0
#include "common/convert.h"

#include <gtest/gtest.h>

#include "support/error_check.h"

namespace kv {
namespace {

TEST(Convert, NullJoinsToNothingAndConvertsToNothingElse) {
  EXPECT_EQ(joinText(Null), "");
  EXPECT_EQ(joinText(Variant()), "");
  EXPECT_RAISES(kInvalidNull, (void)toText(Null));
  EXPECT_RAISES(kInvalidNull, (void)toInt32(Null));
  EXPECT_RAISES(kInvalidNull, (void)toBoolean(Null));
  EXPECT_RAISES(kInvalidNull, (void)toDate(Null));
}

TEST(Convert, EmptyIsZeroAndNoText) {
  EXPECT_EQ(toText(Variant()), "");
  EXPECT_EQ(toInt16(Variant()), 0);
  EXPECT_FALSE(toBoolean(Variant()));
  EXPECT_EQ(toDate(Variant()), Date());
}

TEST(Convert, TextOfEveryKind) {
  EXPECT_EQ(toText(std::int16_t{-7}), "-7");
  EXPECT_EQ(toText(2147483647), "2147483647");
  EXPECT_EQ(toText(true), "True");
  EXPECT_EQ(toText(false), "False");
  EXPECT_EQ(toText(0.1F), "0.1");
  EXPECT_EQ(toText(0.1), "0.1");
  EXPECT_EQ(toText(123456789012345.0), "123456789012345");
  EXPECT_EQ(toText(1e20), "1E+20");
  EXPECT_EQ(toText(-0.0), "0");
  EXPECT_EQ(toText(Date(36959)), "3/9/2001");
  EXPECT_RAISES(kTypeMismatch, (void)toText(Variant(Variant::ObjectRef())));
}

TEST(Convert, FractionsRoundHalfToEven) {
  EXPECT_EQ(toInt32(0.5), 0);
  EXPECT_EQ(toInt32(1.5), 2);
  EXPECT_EQ(toInt32(2.5), 2);
  EXPECT_EQ(toInt32(-2.5), -2);
  EXPECT_EQ(toInt32(-3.5), -4);
  EXPECT_EQ(toInt32("2.4999"), 2);
}

TEST(Convert, NumbersOutOfRangeOverflow) {
  EXPECT_EQ(toInt16(32767.4), 32767);
  EXPECT_RAISES(kOverflow, (void)toInt16(32767.5));
  EXPECT_RAISES(kOverflow, (void)toInt32(2147483648.0));
  EXPECT_RAISES(kOverflow, (void)toDouble("1e999"));
  EXPECT_RAISES(kOverflow, (void)leadingNumber("1e999 men"));
  EXPECT_EQ(parseNumber("-1e999"), std::nullopt);
}

TEST(Convert, NumbersTooSmallForADoubleAreZero) {
  EXPECT_EQ(toDouble("1e-999"), 0);
  EXPECT_EQ(parseNumber("-1.5E-999"), 0);
  EXPECT_EQ(leadingNumber("0." + std::string(400, '0') + "1"), 0);
  EXPECT_RAISES(kOverflow, (void)toDouble(std::string(400, '1') + ".5"));
}

TEST(Convert, OtherTextIsAMismatch) {
  EXPECT_RAISES(kTypeMismatch, (void)toInt32("12abc"));
  EXPECT_RAISES(kTypeMismatch, (void)toDouble(""));
  EXPECT_RAISES(kTypeMismatch, (void)toBoolean("maybe"));
  EXPECT_RAISES(kTypeMismatch, (void)toDate("soon"));
}

TEST(Convert, TrueIsMinusOne) {
  EXPECT_EQ(toInt32(true), -1);
  EXPECT_EQ(toDouble(true), -1);
  EXPECT_TRUE(toBoolean(5));
  EXPECT_TRUE(toBoolean(" TRUE "));
  EXPECT_FALSE(toBoolean("0"));
}

TEST(Convert, LeadingNumberOfText) {
  EXPECT_EQ(leadingNumber("12abc"), 12);
  EXPECT_EQ(leadingNumber("abc"), 0);
  EXPECT_EQ(leadingNumber("  -3.5x"), -3.5);
  EXPECT_EQ(leadingNumber("1e3 men"), 1000);
  EXPECT_EQ(leadingNumber("1e men"), 1);
  EXPECT_EQ(leadingNumber(""), 0);
}

TEST(Convert, EqualsTheEmptyText) {
  EXPECT_TRUE(equalsEmptyText(Variant()));
  EXPECT_TRUE(equalsEmptyText(""));
  EXPECT_FALSE(equalsEmptyText(Null));
  EXPECT_FALSE(equalsEmptyText(0));
  EXPECT_FALSE(equalsEmptyText(" "));
}

TEST(Convert, EmptyTextIsStoredAsNull) {
  EXPECT_TRUE(textOrNull("").isNull());
  EXPECT_EQ(textOrNull(" "), Variant(" "));
}

TEST(Compare, ByTheHostsRules) {
  EXPECT_EQ(compareValues(1, 2.5), -1);
  EXPECT_EQ(compareValues(true, -1), 0);
  EXPECT_EQ(compareValues(Date(2), 2), 0);
  EXPECT_EQ(compareValues("02.00", "02.01"), -1);
  EXPECT_EQ(compareValues("b", "B"), 1);
  EXPECT_EQ(compareValues(99, "1"), -1) << "numbers sort before text";
  EXPECT_EQ(compareValues("1", 99), 1);
  EXPECT_EQ(compareValues(Variant(), ""), 0);
  EXPECT_EQ(compareValues(Variant(), "02.01"), -1);
  EXPECT_EQ(compareValues(Variant(), 0), 0);
  EXPECT_EQ(compareValues(Variant(), Variant()), 0);
  EXPECT_EQ(compareValues(Null, 1), std::nullopt);
  EXPECT_EQ(compareValues("x", Null), std::nullopt);
  EXPECT_RAISES(kTypeMismatch, (void)compareValues(Variant(Variant::ObjectRef()), 1));
}

}  // namespace
}  // namespace kv
