// SPDX-License-Identifier: Apache-2.0
// The SQLite engine: one file, write-ahead log.
#pragma once

#include <memory>

#include "engine/open.h"

struct sqlite3;

namespace kv::engine {

[[nodiscard]] std::unique_ptr<Engine> openSqlite(const OpenOptions& options);

// Removes a file that was made by opening it with `create`, and its log.
void discardSqlite(const OpenOptions& options) noexcept;

// Gives a connection the kv_ functions and the kv_keys table that registers' indexes and our
// statements use. For programs of this project that read a register by hand, such as the
// benchmarks.
void registerSqliteFunctions(sqlite3* connection);

// Marks a file as a register, in the header field that SQLite leaves to applications: "KvVk".
inline constexpr int kRegisterMark = 0x4B76566B;

}  // namespace kv::engine
