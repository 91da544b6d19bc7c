// SPDX-License-Identifier: Apache-2.0
// What this process may do with a file or a folder that is there.
#pragma once

#include <filesystem>

namespace kv::engine {

[[nodiscard]] bool mayRead(const std::filesystem::path& path) noexcept;
// For a folder: whether files may be made in it.
[[nodiscard]] bool mayWrite(const std::filesystem::path& path) noexcept;

}  // namespace kv::engine
