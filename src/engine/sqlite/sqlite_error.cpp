// SPDX-License-Identifier: Apache-2.0
#include "engine/sqlite/sqlite_error.h"

#include <fmt/format.h>
#include <sqlite3.h>

#include <charconv>
#include <string>
#include <utility>

#include "common/error.h"
#include "engine/engine.h"
#include "engine/sqlite/sqlite_locks.h"

namespace kv::engine {

namespace {

// A code we know nothing better about is a refusal.
Cause causeOf(int code) {
  switch (code & 0xFF) {
    case SQLITE_BUSY:
    case SQLITE_LOCKED: return Cause::Locked;
    case SQLITE_READONLY: return Cause::ReadOnly;
    case SQLITE_FULL: return Cause::Full;
    case SQLITE_IOERR: return Cause::DiskError;
    case SQLITE_CORRUPT: return Cause::Damaged;
    case SQLITE_NOTADB: return Cause::NotARegister;
    case SQLITE_CANTOPEN: return Cause::CannotOpen;
    case SQLITE_PERM: return Cause::Denied;
    case SQLITE_NOMEM: return Cause::NoMemory;
    case SQLITE_INTERRUPT: return Cause::Interrupted;
    case SQLITE_TOOBIG: return Cause::TooLarge;
    case SQLITE_CONSTRAINT: return Cause::BreaksRule;
    case SQLITE_AUTH:  // that of our own engine
    case SQLITE_SCHEMA: return Cause::TablesChanged;
    case SQLITE_PROTOCOL: return Cause::LockProtocol;
    default: return Cause::Refused;
  }
}

Cause causeOf(int code, std::string_view message) {
  if ((code & 0xFF) != SQLITE_CONSTRAINT) return causeOf(code);
  if (code == SQLITE_CONSTRAINT_UNIQUE || code == SQLITE_CONSTRAINT_PRIMARYKEY ||
      code == SQLITE_CONSTRAINT_ROWID)
    return Cause::DuplicateKey;
  if (code == SQLITE_CONSTRAINT_NOTNULL) return Cause::NullValue;
  if (message.find("kv_size_") != std::string_view::npos) return Cause::TooLong;
  return Cause::BreaksRule;
}

// Names were looked up before SQLite saw them: one that it does not know is gone from the file.
std::int32_t numberOf(int code, std::string_view message) {
  if ((code & 0xFF) != SQLITE_ERROR) return kEngineFailure;
  if (message.starts_with("no such table")) return kUnknownTable;
  if (message.starts_with("no such column") ||
      message.find(" has no column named ") != std::string_view::npos)
    return kUnknownName;
  return kEngineFailure;
}

}  // namespace

void raiseSqlite(sqlite3* connection, int code) {
  std::string message = connection != nullptr ? sqlite3_errmsg(connection) : sqlite3_errstr(code);
  const int extended =
      connection != nullptr && (sqlite3_extended_errcode(connection) & 0xFF) == (code & 0xFF)
          ? sqlite3_extended_errcode(connection)
          : code;
  if (message.starts_with(kFunctionErrorMark)) {
    std::int32_t number = 0;
    const char* const first = message.data() + kFunctionErrorMark.size();
    const auto [end, problem] = std::from_chars(first, message.data() + message.size(), number);
    if (problem == std::errc() && *end == ' ') throw Error(number, "kvData", std::string(end + 1));
  }
  const Cause cause = causeOf(extended, message);
  std::string_view sentence = sentenceOf(cause);
  if ((extended & 0xFF) == SQLITE_BUSY && connection != nullptr && ownThreadHoldsLock(connection))
    sentence = kLockedByItself;
  std::string text = fmt::format("{} {} ({})", sentence, message, extended);
  if ((extended & 0xFF) == SQLITE_AUTH) throw TablesChanged(kEngineFailure, std::move(text));
  throw Error(numberOf(extended, message), "kvData", std::move(text), {}, cause);
}

}  // namespace kv::engine
