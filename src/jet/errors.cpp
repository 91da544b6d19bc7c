// SPDX-License-Identifier: Apache-2.0
#include "jet/errors.h"

#include <fmt/format.h>

#include <algorithm>

#include "common/text.h"

namespace kv::jet {

void fail(std::int32_t number, std::string_view text, std::string_view statement, TextRange where) {
  const auto offset = std::min(where.offset, statement.size());
  const auto position = characterCount(statement.substr(0, offset)) + 1;
  std::string found = "end of statement";
  if (offset < statement.size() && where.length > 0) {
    auto piece = statement.substr(offset, where.length);
    constexpr std::size_t kShown = 60;  // characters; enough to recognise the place
    const auto cut = byteOffset(piece, kShown);
    found = fmt::format("'{}{}'", piece.substr(0, cut), cut < piece.size() ? "..." : "");
  }
  throw Error(number, "kvData", fmt::format("{} (position {}: {})", text, position, found), where);
}

}  // namespace kv::jet
