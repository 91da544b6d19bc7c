// SPDX-License-Identifier: Apache-2.0
// SQLite's result codes to the errors that clients know.
#pragma once

#include <string_view>

struct sqlite3;

namespace kv::engine {

// Throws the error for `code`, the result of a call on `connection`. The first sentence names the
// cause, SQLite's own message and code come last. `connection` may be nullptr.
[[noreturn]] void raiseSqlite(sqlite3* connection, int code);

// A message that a kv_ function gives to SQLite so that raiseSqlite finds its number again.
inline constexpr std::string_view kFunctionErrorMark = "kv error ";

}  // namespace kv::engine
