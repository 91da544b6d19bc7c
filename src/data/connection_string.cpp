// SPDX-License-Identifier: Apache-2.0
#include "data/connection_string.h"

#include "common/convert.h"
#include "common/error.h"
#include "common/text.h"

namespace kv {

namespace {

// Calls take(key, value) for every pair; false when the text is no list of pairs.
template <class Take>
bool eachPair(std::string_view text, Take take) {
  std::size_t at = 0;
  while (at < text.size()) {
    if (text[at] == ';' || text[at] == ' ') {
      ++at;
      continue;
    }
    const auto equals = text.find('=', at);
    if (equals == std::string_view::npos) return false;
    const std::string key = asciiLowered(trimmed(text.substr(at, equals - at)));
    at = equals + 1;
    while (at < text.size() && text[at] == ' ') ++at;
    std::string_view value;
    if (at < text.size() && (text[at] == '"' || text[at] == '\'')) {
      const auto close = text.find(text[at], at + 1);
      if (close == std::string_view::npos) return false;
      value = text.substr(at + 1, close - at - 1);
      at = close + 1;
      const auto rest = trimmed(text.substr(at, text.find(';', at) - at));
      if (!rest.empty()) return false;
    } else {
      value = trimmed(text.substr(at, text.find(';', at) - at));
    }
    take(key, value);
    at = text.find(';', at);
    if (at == std::string_view::npos) return true;
  }
  return true;
}

double amount(std::string_view value, double most) {
  const auto number = parseNumber(value);
  if (!number || *number < 0 || *number > most) raise(kBadArgument, value);
  return *number;
}

}  // namespace

engine::OpenOptions parseConnectionString(std::string_view text) {
  constexpr double kMostSeconds = 86400;
  constexpr double kMostMiB = 1048576;
  engine::OpenOptions out;
  if (asciiLowered(text).find("data source") == std::string::npos) {
    out.location = trimmed(text);
  } else {
    const bool good = eachPair(text, [&](const std::string& key, std::string_view value) {
      if (key == "data source") {
        out.location = value;
      } else if (key == "lock timeout") {
        out.lockTimeout = std::chrono::milliseconds(
            static_cast<std::int64_t>(amount(value, kMostSeconds) * 1000));
      } else if (key == "page cache") {
        out.cacheMiB = static_cast<int>(amount(value, kMostMiB));
      } else if (key == "memory map") {
        out.memoryMapMiB = static_cast<int>(amount(value, kMostMiB));
      }
    });
    if (!good) raise(kBadArgument, "The connection string is malformed.");
  }
  if (out.location.empty()) raise(kNoConnection, "The connection string names no data source.");
  return out;
}

}  // namespace kv
