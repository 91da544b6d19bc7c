// SPDX-License-Identifier: Apache-2.0
#include "common/date.h"

#include <gtest/gtest.h>

#include "common/clock.h"
#include "support/error_check.h"

namespace kv {
namespace {

Date at(int year, int month, int day, int hour = 0, int minute = 0, int second = 0, int ms = 0) {
  return Date(CalendarTime{year, month, day, hour, minute, second, ms});
}

TEST(Date, CountsDaysFromTheThirtiethOfDecember1899) {
  EXPECT_EQ(at(1899, 12, 30).days(), 0);
  EXPECT_EQ(at(1900, 1, 1).days(), 2);
  EXPECT_EQ(at(2001, 3, 9).days(), 36959);
  EXPECT_EQ(at(2001, 3, 9, 18).days(), 36959.75);
}

TEST(Date, BeforeTheEpochTheFractionIsStillTheTimeOfDay) {
  EXPECT_EQ(at(1899, 12, 29, 6).days(), -1.25);
  EXPECT_EQ(Date(-1.25), at(1899, 12, 29, 6));
  EXPECT_LT(Date(-1.75), Date(-0.25));
}

TEST(Date, EveryDayOfAFourHundredYearCycleComesBack) {
  const Date first = at(1900, 1, 1);
  int month = 1;
  for (int n = 0; n < 146097; ++n) {
    const Date day = first.plusDays(n);
    const CalendarTime f = day.fields();
    ASSERT_EQ(Date(f), day);
    ASSERT_TRUE(f.month == month || f.day == 1) << isoText(day);
    month = f.month;
  }
}

TEST(Date, KeepsTheYears100To9999) {
  EXPECT_EQ(isoText(at(100, 1, 1)), "0100-01-01");
  EXPECT_EQ(isoText(at(9999, 12, 31, 23, 59, 59, 999)), "9999-12-31 23:59:59.999");
  EXPECT_RAISES(kOverflow, (void)at(9999, 12, 31).plusDays(1));
  EXPECT_RAISES(kOverflow, (void)Date(1e9));
  EXPECT_RAISES(kInvalidCall, (void)at(2001, 2, 29));
}

TEST(Date, TextHasNoLeadingZerosAndATimeOnlyWhenThereIsOne) {
  EXPECT_EQ(dateText(at(2001, 3, 9)), "3/9/2001");
  EXPECT_EQ(dateText(at(2001, 12, 31, 14, 5, 9)), "12/31/2001 2:05:09 PM");
  EXPECT_EQ(dateText(at(2001, 12, 31, 0, 5, 9)), "12/31/2001 12:05:09 AM");
  EXPECT_EQ(dateText(at(2001, 12, 31, 12)), "12/31/2001 12:00:00 PM");
}

TEST(Date, StampsHaveTwoDigitsForEverything) {
  EXPECT_EQ(stampText(at(2001, 2, 3, 14, 5, 9)), "020301140509");
}

struct Reading {
  const char* text;
  const char* iso;  // nullptr for a text that is no date
};

TEST(Date, ReadsItsOwnTextAndIso) {
  const Reading cases[] = {
      {"3/9/2001", "2001-03-09"},
      {" 12/31/2001 2:05:09 PM ", "2001-12-31 14:05:09"},
      {"12/31/2001 2:05 PM", "2001-12-31 14:05:00"},
      {"2001-03-09", "2001-03-09"},
      {"2001-03-09 14:05:09.250", "2001-03-09 14:05:09.250"},
      {"2020-03-17T22:11:26Z", "2020-03-17 22:11:26"},
      {"13/1/2001", nullptr},
      {"2/30/2001", nullptr},
      {"3/9/01", nullptr},
      {"14:05", nullptr},
      {"2001-03-09 25:00", nullptr},
      {"2001-03-09 13:00 PM", nullptr},
      {"2001-03", nullptr},
      {"yyyy-mm-dd", nullptr},
      {"", nullptr},
  };
  for (const auto& c : cases) {
    const auto date = parseDate(c.text);
    EXPECT_EQ(date.has_value(), c.iso != nullptr) << c.text;
    if (date && c.iso != nullptr) {
      EXPECT_EQ(isoText(*date), c.iso) << c.text;
    }
  }
}

TEST(Date, LiteralsReadMoreForms) {
  const Reading cases[] = {
      {"3/9/2001", "2001-03-09"},
      {"3/9/29", "2029-03-09"},
      {"3/9/30", "1930-03-09"},
      {"25/07/2018", "2018-07-25"},
      {"2018-07-25 10:42", "2018-07-25 10:42:00"},
      {"2018/7/25", "2018-07-25"},
      {"10:42 PM", "1899-12-30 22:42:00"},
      {"March 9, 2001", "2001-03-09"},
      {"9 Mar 2001", "2001-03-09"},
      {"9-Mar-2001 1:00 AM", "2001-03-09 01:00:00"},
      {"13/13/2001", nullptr},
      {"0/1/2001", nullptr},
      {"Marble 9, 2001", nullptr},
  };
  for (const auto& c : cases) {
    const auto date = parseDateLiteral(c.text);
    EXPECT_EQ(date.has_value(), c.iso != nullptr) << c.text;
    if (date && c.iso != nullptr) {
      EXPECT_EQ(isoText(*date), c.iso) << c.text;
    }
  }
}

TEST(Date, StoredFormIsReadExactly) {
  EXPECT_EQ(*parseIso("2001-03-09 14:05:09.250"), at(2001, 3, 9, 14, 5, 9, 250));
  for (const char* text :
       {"2001-3-9", "2001-03-09 14:05", "2001-13-09", "2001-03-09T14:05:09", " 2001-03-09"})
    EXPECT_FALSE(parseIso(text)) << text;
}

TEST(Clock, StandsWhileItIsStopped) {
  const StoppedClock outer(at(2001, 2, 3, 14, 5, 9));
  EXPECT_EQ(isoText(now()), "2001-02-03 14:05:09");
  EXPECT_EQ(isoText(today()), "2001-02-03");
  {
    const StoppedClock inner(at(2002, 1, 1));
    EXPECT_EQ(isoText(now()), "2002-01-01");
  }
  EXPECT_EQ(isoText(now()), "2001-02-03 14:05:09");
}

TEST(Clock, RunsOtherwise) {
  const Date before = now();
  EXPECT_GT(before, at(2024, 1, 1));
  EXPECT_EQ(before.milliseconds() % 1000, 0);
}

}  // namespace
}  // namespace kv
