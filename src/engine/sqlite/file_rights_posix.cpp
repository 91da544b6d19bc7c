// SPDX-License-Identifier: Apache-2.0
#include <unistd.h>

#include "engine/sqlite/file_rights.h"

namespace kv::engine {

bool mayRead(const std::filesystem::path& path) noexcept { return access(path.c_str(), R_OK) == 0; }

bool mayWrite(const std::filesystem::path& path) noexcept {
  return access(path.c_str(), W_OK) == 0;
}

}  // namespace kv::engine
