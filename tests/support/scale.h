// SPDX-License-Identifier: Apache-2.0
// How long random walks are: full length in an ordinary build, a tenth under the sanitizers.
#pragma once

namespace kv::test {

[[nodiscard]] constexpr int steps(int full) {
#if defined(__SANITIZE_ADDRESS__)
  return full / 10;
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
  return full / 10;
#else
  return full;
#endif
#else
  return full;
#endif
}

}  // namespace kv::test
