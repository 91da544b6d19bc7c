#include "common/local_time.h"

namespace kv {

std::tm localTime(std::time_t seconds) {
  std::tm local{};
  localtime_r(&seconds, &local);
  return local;
}

}  // namespace kv
