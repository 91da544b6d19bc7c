// SPDX-License-Identifier: Apache-2.0
#include "common/local_time.h"

namespace kv {

std::tm localTime(std::time_t seconds) {
  std::tm local{};
  localtime_s(&local, &seconds);
  return local;
}

}  // namespace kv
