// SPDX-License-Identifier: Apache-2.0
// The one clock. Everything that writes "now" or "today" asks it, so that tests can hold it still.
#pragma once

#include "common/date.h"

namespace kv {

// The present local date and time, to the second.
[[nodiscard]] Date now();
// The present local day, without a time.
[[nodiscard]] Date today();

// While one of these lives the clock stands at the given moment; they nest.
class StoppedClock {
 public:
  explicit StoppedClock(Date at);
  ~StoppedClock();
  StoppedClock(const StoppedClock&) = delete;
  StoppedClock& operator=(const StoppedClock&) = delete;
  StoppedClock(StoppedClock&&) = delete;
  StoppedClock& operator=(StoppedClock&&) = delete;

  void set(Date at);

 private:
  bool wasStopped_;
  Date before_;
};

}  // namespace kv
