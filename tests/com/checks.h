// SPDX-License-Identifier: Apache-2.0
// Counting what holds, as the scripts do.
#pragma once

#include <cstdio>

namespace checks {

inline int count = 0;
inline int failures = 0;

inline void that(bool holds, const char* what) {
  ++count;
  if (holds) return;
  ++failures;
  std::printf("FAILED %s\n", what);
}

inline int finish() {
  std::printf("%d checks, %d failed\n", count, failures);
  return failures == 0 ? 0 : 1;
}

}  // namespace checks
