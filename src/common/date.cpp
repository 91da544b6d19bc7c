// SPDX-License-Identifier: Apache-2.0
#include "common/date.h"

#include <fmt/format.h>

#include <array>
#include <cmath>
#include <vector>

#include "common/error.h"
#include "common/text.h"

namespace kv {

namespace {

constexpr std::int64_t kMsPerDay = 86'400'000;

// Days from 1899-12-30 to a civil date (algorithm by era of 400 years).
constexpr std::int64_t dayNumber(int year, int month, int day) noexcept {
  const int y = year - (month <= 2 ? 1 : 0);
  const int era = (y >= 0 ? y : y - 399) / 400;
  const int yearOfEra = y - era * 400;
  const int dayOfYear = (153 * (month + (month > 2 ? -3 : 9)) + 2) / 5 + day - 1;
  const int dayOfEra = yearOfEra * 365 + yearOfEra / 4 - yearOfEra / 100 + dayOfYear;
  const std::int64_t sinceUnix = static_cast<std::int64_t>(era) * 146097 + dayOfEra - 719468;
  return sinceUnix + 25569;
}

constexpr std::int64_t kFirstMs = dayNumber(100, 1, 1) * kMsPerDay;
constexpr std::int64_t kLastMs = (dayNumber(9999, 12, 31) + 1) * kMsPerDay - 1;

constexpr std::int64_t floorDiv(std::int64_t a, std::int64_t b) noexcept {
  return a / b - ((a % b != 0 && (a < 0) != (b < 0)) ? 1 : 0);
}

void civilFromDay(std::int64_t number, CalendarTime& out) noexcept {
  const std::int64_t z = number - 25569 + 719468;
  const std::int64_t era = floorDiv(z, 146097);
  const auto dayOfEra = static_cast<int>(z - era * 146097);
  const int yearOfEra = (dayOfEra - dayOfEra / 1460 + dayOfEra / 36524 - dayOfEra / 146096) / 365;
  const int dayOfYear = dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
  const int mp = (5 * dayOfYear + 2) / 153;
  out.day = dayOfYear - (153 * mp + 2) / 5 + 1;
  out.month = mp + (mp < 10 ? 3 : -9);
  out.year = static_cast<int>(era * 400) + yearOfEra + (out.month <= 2 ? 1 : 0);
}

constexpr int daysInMonth(int year, int month) noexcept {
  constexpr std::array<int, 12> kDays = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  const bool leap = (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
  return month == 2 && leap ? 29 : kDays[static_cast<std::size_t>(month - 1)];
}

bool validDay(int year, int month, int day) noexcept {
  return year >= 100 && year <= 9999 && month >= 1 && month <= 12 && day >= 1 &&
         day <= daysInMonth(year, month);
}

// A forward-only reader over the pieces of a date text.
class Scanner {
 public:
  explicit Scanner(std::string_view text) : text_(text) {}

  [[nodiscard]] bool atEnd() const { return at_ == text_.size(); }
  [[nodiscard]] char peek() const { return atEnd() ? '\0' : text_[at_]; }
  bool take(char c) {
    if (peek() != c || atEnd()) return false;
    ++at_;
    return true;
  }
  bool blanks() {
    const auto start = at_;
    while (take(' ')) {
    }
    return at_ > start;
  }
  // Digits, at most `most`; the count read goes to `digits`.
  std::optional<int> number(int most, int& digits) {
    digits = 0;
    int value = 0;
    while (digits < most && isDigit(peek())) {
      value = value * 10 + (text_[at_++] - '0');
      ++digits;
    }
    if (digits == 0 || isDigit(peek())) return std::nullopt;
    return value;
  }
  std::string word() {
    std::string out;
    while (isAsciiLetter(peek())) out += asciiLower(text_[at_++]);
    return out;
  }
  [[nodiscard]] std::size_t mark() const { return at_; }
  void rewind(std::size_t mark) { at_ = mark; }

 private:
  std::string_view text_;
  std::size_t at_ = 0;
};

// h:mm, h:mm:ss, h:mm:ss.fff, each with AM or PM; with AM or PM also h alone.
bool readTime(Scanner& in, CalendarTime& out) {
  int digits = 0;
  const auto hour = in.number(2, digits);
  if (!hour) return false;
  out.hour = *hour;
  bool minutes = false;
  if (in.take(':')) {
    const auto minute = in.number(2, digits);
    if (!minute || *minute > 59) return false;
    out.minute = *minute;
    minutes = true;
    if (in.take(':')) {
      const auto second = in.number(2, digits);
      if (!second || *second > 59) return false;
      out.second = *second;
      if (in.take('.')) {
        const auto fraction = in.number(3, digits);
        if (!fraction) return false;
        out.millisecond = digits == 1 ? *fraction * 100 : digits == 2 ? *fraction * 10 : *fraction;
      }
    }
  }
  const auto mark = in.mark();
  in.blanks();
  const std::string half = in.word();
  if (half == "am" || half == "pm") {
    if (out.hour < 1 || out.hour > 12) return false;
    out.hour = out.hour % 12 + (half == "pm" ? 12 : 0);
    return true;
  }
  in.rewind(mark);
  return minutes && out.hour <= 23;
}

int monthByName(const std::string& word) {
  static constexpr std::array<std::string_view, 12> kNames = {
      "january", "february", "march",     "april",   "may",      "june",
      "july",    "august",   "september", "october", "november", "december"};
  if (word.size() < 3) return 0;
  for (std::size_t i = 0; i < kNames.size(); ++i)
    if (word == kNames[i] || word == kNames[i].substr(0, 3)) return static_cast<int>(i) + 1;
  return 0;
}

int fullYear(int year, int digits) {
  if (digits > 2) return year;
  return year + (year <= 29 ? 2000 : 1900);
}

// Day part of the strict forms; `lenient` admits two-digit years, swapped fields and month names.
bool readDay(Scanner& in, CalendarTime& out, bool lenient) {
  int digits = 0;
  if (lenient && isAsciiLetter(in.peek())) {  // March 9, 2001
    out.month = monthByName(in.word());
    in.blanks();
    const auto day = in.number(2, digits);
    if (out.month == 0 || !day) return false;
    out.day = *day;
    in.take(',');
    in.blanks();
    const auto year = in.number(4, digits);
    if (!year || (digits != 2 && digits != 4)) return false;
    out.year = fullYear(*year, digits);
    return validDay(out.year, out.month, out.day);
  }
  const auto first = in.number(4, digits);
  if (!first) return false;
  const int firstDigits = digits;
  const char separator = in.peek();
  if (lenient && (separator == ' ' || separator == '-') && firstDigits <= 2) {  // 9 March 2001
    const auto mark = in.mark();
    in.take(separator);
    const int month = monthByName(in.word());
    if (month != 0) {
      if (!in.take(separator)) return false;
      const auto year = in.number(4, digits);
      if (!year || (digits != 2 && digits != 4)) return false;
      out = {.year = fullYear(*year, digits), .month = month, .day = *first};
      return validDay(out.year, out.month, out.day);
    }
    in.rewind(mark);
  }
  const bool iso = firstDigits == 4 && separator == '-';
  const bool yearFirst = iso || (lenient && firstDigits == 4 && separator == '/');
  if (!in.take(yearFirst ? separator : (lenient && separator == '-') ? '-' : '/')) return false;
  const auto second = in.number(2, digits);
  if (!second || !in.take(separator)) return false;
  const auto third = in.number(4, digits);
  if (!third) return false;
  if (yearFirst) {
    out = {.year = *first, .month = *second, .day = *third};
    if (digits > 2) return false;
  } else {
    if (firstDigits > 2 || (digits != 4 && !(lenient && digits == 2))) return false;
    out = {.year = fullYear(*third, digits), .month = *first, .day = *second};
    if (lenient && out.month > 12 && out.day <= 12) std::swap(out.month, out.day);
  }
  return validDay(out.year, out.month, out.day);
}

std::optional<Date> readWhole(std::string_view text, bool lenient) {
  Scanner in(trimmed(text));
  CalendarTime fields;
  if (lenient) {
    const auto mark = in.mark();
    CalendarTime time;
    if (readTime(in, time) && in.atEnd()) return Date(time);
    in.rewind(mark);
  }
  if (!readDay(in, fields, lenient)) return std::nullopt;
  if (in.atEnd()) return Date(fields);
  if (!in.take('T') && !in.blanks()) return std::nullopt;
  if (!readTime(in, fields)) return std::nullopt;
  in.take('Z');  // a moment written in UTC is taken as it stands
  return in.atEnd() ? std::optional(Date(fields)) : std::nullopt;
}

}  // namespace

Date::Date(double days) {
  if (!std::isfinite(days) || days < -700'000 || days > 3'000'000) raise(kOverflow);
  const double whole = std::trunc(days);
  const double fraction = std::fabs(days - whole);
  *this = fromMilliseconds(static_cast<std::int64_t>(whole) * kMsPerDay +
                           std::llround(fraction * static_cast<double>(kMsPerDay)));
}

Date::Date(const CalendarTime& f) {
  if (!validDay(f.year, f.month, f.day) || f.hour < 0 || f.hour > 23 || f.minute < 0 ||
      f.minute > 59 || f.second < 0 || f.second > 59 || f.millisecond < 0 || f.millisecond > 999)
    raise(kInvalidCall);
  milliseconds_ = dayNumber(f.year, f.month, f.day) * kMsPerDay +
                  ((f.hour * 60 + f.minute) * 60 + f.second) * 1000LL + f.millisecond;
}

Date Date::fromMilliseconds(std::int64_t sinceEpoch) {
  if (sinceEpoch < kFirstMs || sinceEpoch > kLastMs) raise(kOverflow);
  Date out;
  out.milliseconds_ = sinceEpoch;
  return out;
}

double Date::days() const noexcept {
  const std::int64_t whole = floorDiv(milliseconds_, kMsPerDay);
  const double fraction =
      static_cast<double>(milliseconds_ - whole * kMsPerDay) / static_cast<double>(kMsPerDay);
  return whole < 0 ? static_cast<double>(whole) - fraction : static_cast<double>(whole) + fraction;
}

CalendarTime Date::fields() const noexcept {
  const std::int64_t whole = floorDiv(milliseconds_, kMsPerDay);
  auto rest = static_cast<int>(milliseconds_ - whole * kMsPerDay);
  CalendarTime out;
  civilFromDay(whole, out);
  out.millisecond = rest % 1000;
  rest /= 1000;
  out.second = rest % 60;
  rest /= 60;
  out.minute = rest % 60;
  out.hour = rest / 60;
  return out;
}

bool Date::hasTime() const noexcept { return milliseconds_ % kMsPerDay != 0; }

Date Date::day() const { return fromMilliseconds(floorDiv(milliseconds_, kMsPerDay) * kMsPerDay); }

Date Date::plusDays(std::int64_t days) const {
  return fromMilliseconds(milliseconds_ + days * kMsPerDay);
}

std::string dateText(Date date) {
  const CalendarTime f = date.fields();
  std::string out = fmt::format("{}/{}/{:04}", f.month, f.day, f.year);
  if (date.hasTime()) {
    const int hour = f.hour % 12 == 0 ? 12 : f.hour % 12;
    out += fmt::format(" {}:{:02}:{:02} {}", hour, f.minute, f.second, f.hour < 12 ? "AM" : "PM");
  }
  return out;
}

std::string isoText(Date date) {
  const CalendarTime f = date.fields();
  std::string out = fmt::format("{:04}-{:02}-{:02}", f.year, f.month, f.day);
  if (date.hasTime()) {
    out += fmt::format(" {:02}:{:02}:{:02}", f.hour, f.minute, f.second);
    if (f.millisecond != 0) out += fmt::format(".{:03}", f.millisecond);
  }
  return out;
}

std::string stampText(Date date) {
  const CalendarTime f = date.fields();
  return fmt::format("{:02}{:02}{:02}{:02}{:02}{:02}", f.month, f.day, f.year % 100, f.hour,
                     f.minute, f.second);
}

std::optional<Date> parseDate(std::string_view text) { return readWhole(text, false); }

std::optional<Date> parseDateLiteral(std::string_view text) { return readWhole(text, true); }

std::optional<Date> parseIso(std::string_view text) noexcept {
  const auto digits = [&](std::size_t at, std::size_t count) {
    int value = 0;
    for (std::size_t i = at; i < at + count; ++i) {
      if (!isDigit(text[i])) return -1;
      value = value * 10 + (text[i] - '0');
    }
    return value;
  };
  const auto size = text.size();
  if ((size != 10 && size != 19 && size != 23) || text[4] != '-' || text[7] != '-')
    return std::nullopt;
  const int year = digits(0, 4);
  const int month = digits(5, 2);
  const int day = digits(8, 2);
  if (year < 0 || month < 0 || day < 0 || !validDay(year, month, day)) return std::nullopt;
  std::int64_t ms = dayNumber(year, month, day) * kMsPerDay;
  if (size > 10) {
    if (text[10] != ' ' || text[13] != ':' || text[16] != ':') return std::nullopt;
    const int hour = digits(11, 2);
    const int minute = digits(14, 2);
    const int second = digits(17, 2);
    if (hour < 0 || hour > 23 || minute < 0 || minute > 59 || second < 0 || second > 59)
      return std::nullopt;
    ms += ((hour * 60 + minute) * 60 + second) * 1000LL;
    if (size == 23) {
      const int fraction = digits(20, 3);
      if (text[19] != '.' || fraction < 0) return std::nullopt;
      ms += fraction;
    }
  }
  Date out = Date::fromMilliseconds(ms);
  return out;
}

}  // namespace kv
