// SPDX-License-Identifier: Apache-2.0
// Paths are UTF-8 text everywhere but where the system is asked for a file.
#pragma once

#include <filesystem>
#include <string>

namespace kv {

[[nodiscard]] inline std::filesystem::path pathOf(const std::string& text) {
  return {reinterpret_cast<const char8_t*>(text.c_str())};
}

[[nodiscard]] inline std::string pathText(const std::filesystem::path& path) {
  const auto text = path.u8string();
  return {text.begin(), text.end()};
}

}  // namespace kv
