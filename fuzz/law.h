// SPDX-License-Identifier: Apache-2.0
// What the fuzz targets say when a law of the library does not hold.
#pragma once

#include <cstdio>
#include <cstdlib>
#include <string_view>

namespace kv::fuzz {

// Stops the target where `holds` is false, which makes the input a finding.
inline void law(bool holds, std::string_view what, std::string_view detail = {}) {
  if (holds) return;
  std::fprintf(stderr, "broken: %.*s\n%.*s\n", static_cast<int>(what.size()), what.data(),
               static_cast<int>(detail.size()), detail.data());
  std::abort();
}

}  // namespace kv::fuzz
