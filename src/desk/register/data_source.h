// SPDX-License-Identifier: Apache-2.0
// Places as connection strings take them.
#pragma once

#include <string>

namespace kv::desk {

// The connection string for a file's path or a server's location, whatever characters it has.
[[nodiscard]] inline std::string dataSource(const std::string& place) {
  const char quote = place.find('"') == std::string::npos ? '"' : '\'';
  return "Data Source=" + (quote + place + quote);
}

}  // namespace kv::desk
