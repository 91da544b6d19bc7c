#include "kvdata/engine/sqlite/sqlite_error.h"

#include <fmt/format.h>
#include <sqlite3.h>

#include <charconv>
#include <string>

#include "common/error.h"

namespace kv::engine {

namespace {

// The cause in a sentence, for the primary code. A code we know nothing better about says so.
std::string_view cause(int code) {
  switch (code & 0xFF) {
    case SQLITE_BUSY:
    case SQLITE_LOCKED: return "The register is locked by another process.";
    case SQLITE_READONLY: return "The register is read-only.";
    case SQLITE_FULL: return "The disk is full.";
    case SQLITE_IOERR: return "The disk reported an error.";
    case SQLITE_CORRUPT: return "The file is damaged.";
    case SQLITE_NOTADB: return "The file is not a register.";
    case SQLITE_CANTOPEN: return "The file could not be opened.";
    case SQLITE_PERM:
    case SQLITE_AUTH: return "Permission to the file was denied.";
    case SQLITE_NOMEM: return "There is not enough memory.";
    case SQLITE_INTERRUPT: return "The statement was interrupted.";
    case SQLITE_TOOBIG: return "The value or statement is too large.";
    case SQLITE_CONSTRAINT: return "The change breaks a rule of the table.";
    case SQLITE_SCHEMA: return "The tables were changed while the statement ran.";
    case SQLITE_PROTOCOL: return "The file lock protocol failed.";
    case SQLITE_ERROR:
    case SQLITE_INTERNAL:
    case SQLITE_ABORT:
    case SQLITE_MISMATCH:
    case SQLITE_MISUSE:
    case SQLITE_NOLFS:
    case SQLITE_RANGE:
    default: return "The database engine refused the statement.";
  }
}

std::string_view constraintCause(int code, std::string_view message) {
  if (code == SQLITE_CONSTRAINT_UNIQUE || code == SQLITE_CONSTRAINT_PRIMARYKEY ||
      code == SQLITE_CONSTRAINT_ROWID)
    return "The changes were not successful because they would create a duplicate key.";
  if (code == SQLITE_CONSTRAINT_NOTNULL) return "The field cannot contain a Null value.";
  if (message.find("kv_size_") != std::string_view::npos)
    return "The field is too small to accept the amount of data you attempted to add. Try "
           "inserting "
           "or pasting less data.";
  return cause(code);
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
  const std::string_view first =
      (extended & 0xFF) == SQLITE_CONSTRAINT ? constraintCause(extended, message) : cause(extended);
  throw Error(kEngineFailure, "kvData", fmt::format("{} {} ({})", first, message, extended));
}

}  // namespace kv::engine
