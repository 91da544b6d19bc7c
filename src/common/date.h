// SPDX-License-Identifier: Apache-2.0
// Date: a day count with fraction from 1899-12-30.
#pragma once

#include <compare>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "common/export.h"

namespace kv {

// Calendar fields of a date, in the proleptic Gregorian calendar, local time without zone.
struct CalendarTime {
  int year = 1899;  // 100 to 9999
  int month = 12;   // 1 to 12
  int day = 30;     // 1 to 31
  int hour = 0;     // 0 to 23
  int minute = 0;
  int second = 0;
  int millisecond = 0;
};

// A moment, to the millisecond. The count is kept as clients of variant dates know it: the whole
// part is the day, the absolute value of the fraction is the time of that day, so -1.25 is
// 1899-12-29 06:00.
class KVVESK_API Date {
 public:
  constexpr Date() noexcept = default;
  // Days since 1899-12-30; rounded to the millisecond. Raises 6 outside the years 100 to 9999.
  explicit Date(double days);
  // Raises 5 when the fields name no moment of the years 100 to 9999.
  explicit Date(const CalendarTime& fields);

  [[nodiscard]] static Date fromMilliseconds(std::int64_t sinceEpoch);

  [[nodiscard]] double days() const noexcept;
  // Milliseconds since 1899-12-30 00:00, monotonic over the whole range.
  [[nodiscard]] constexpr std::int64_t milliseconds() const noexcept { return milliseconds_; }
  [[nodiscard]] CalendarTime fields() const noexcept;
  [[nodiscard]] bool hasTime() const noexcept;
  // The same day without a time.
  [[nodiscard]] Date day() const;
  [[nodiscard]] Date plusDays(std::int64_t days) const;

  friend constexpr auto operator<=>(const Date&, const Date&) noexcept = default;

 private:
  std::int64_t milliseconds_ = 0;
};

// "3/9/2001", with a blank and "2:05:09 PM" only when there is a time of day.
[[nodiscard]] KVVESK_API std::string dateText(Date date);

// "2001-03-09", with " 14:05:09" when there is a time and ".123" when it has milliseconds.
[[nodiscard]] KVVESK_API std::string isoText(Date date);

// "MMDDYYhhmmss" on the 24-hour clock, as identifiers carry it.
[[nodiscard]] KVVESK_API std::string stampText(Date date);

// Reads month/day/four-digit year or year-month-day, each with an optional time (h:mm or h:mm:ss,
// fraction, AM or PM; a "T" may stand in place of the blank). Anything else is nothing.
[[nodiscard]] KVVESK_API std::optional<Date> parseDate(std::string_view text);

// Reads what may stand between # signs in a statement: as parseDate, and two-digit years (00-29 is
// 20xx), day and month swapped where the month is impossible, month names, and a time alone (on day
// 0).
[[nodiscard]] KVVESK_API std::optional<Date> parseDateLiteral(std::string_view text);

// Reads exactly the form that isoText writes; the fast path for stored values.
[[nodiscard]] KVVESK_API std::optional<Date> parseIso(std::string_view text) noexcept;

}  // namespace kv
