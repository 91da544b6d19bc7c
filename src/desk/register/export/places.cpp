// SPDX-License-Identifier: Apache-2.0
#include "desk/register/export/places.h"

#include <algorithm>
#include <cstddef>

#include "common/convert.h"
#include "common/text_key.h"

namespace kv::desk {

namespace {

// As the library spreads them.
constexpr double kRange = 99;

}  // namespace

void evenPlaces(const std::vector<std::string>& manuals, std::vector<std::string>& places) {
  for (std::size_t from = 0, to = 0; from < places.size(); from = to) {
    while (to < places.size() && foldKey(manuals[to]) == foldKey(manuals[from])) ++to;
    const auto first = places.begin() + static_cast<std::ptrdiff_t>(from);
    const auto last = places.begin() + static_cast<std::ptrdiff_t>(to);
    if (std::all_of(first, last, [](const auto& place) { return parseNumber(place).has_value(); }))
      continue;
    const double step = kRange / static_cast<double>(to - from);
    for (std::size_t row = from; row < to; ++row)
      places[row] = numberText(static_cast<double>(row - from) * step);
  }
}

}  // namespace kv::desk
