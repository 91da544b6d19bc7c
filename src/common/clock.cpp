// SPDX-License-Identifier: Apache-2.0
#include "common/clock.h"

#include <ctime>

#include "common/local_time.h"

namespace kv {

namespace {

struct Stop {
  bool stopped = false;
  Date at;
};

// The only mutable global of the library besides the COM module count.
Stop& stop() {
  static Stop instance;
  return instance;
}

}  // namespace

Date now() {
  if (stop().stopped) return stop().at;
  const std::tm local = localTime(std::time(nullptr));
  return Date(CalendarTime{.year = local.tm_year + 1900,
                           .month = local.tm_mon + 1,
                           .day = local.tm_mday,
                           .hour = local.tm_hour,
                           .minute = local.tm_min,
                           .second = local.tm_sec > 59 ? 59 : local.tm_sec});
}

Date today() { return now().day(); }

StoppedClock::StoppedClock(Date at) : wasStopped_(stop().stopped), before_(stop().at) { set(at); }

StoppedClock::~StoppedClock() {
  stop().stopped = wasStopped_;
  stop().at = before_;
}

void StoppedClock::set(Date at) {
  stop().stopped = true;
  stop().at = at;
}

}  // namespace kv
