// SPDX-License-Identifier: Apache-2.0
#include "jet/emit/texts.h"

namespace kv::jet {

std::string joinTexts(const std::vector<std::string>& parts, std::string_view between) {
  std::string out;
  for (std::size_t i = 0; i < parts.size(); ++i) {
    if (i > 0) out += between;
    out += parts[i];
  }
  return out;
}

std::string quotedName(std::string_view name) {
  std::string out = "\"";
  for (const char c : name) {
    if (c == '"') out += '"';
    out += c;
  }
  return out + "\"";
}

}  // namespace kv::jet
