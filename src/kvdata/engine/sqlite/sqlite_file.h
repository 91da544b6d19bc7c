// What a file is, before SQLite is asked to open it.
#pragma once

#include <string>

namespace kv::engine {

enum class FileAccess {
  ReadWrite,
  ReadOnly,    // the file may not be written, but its folder may hold the log's files
  Unchanging,  // nothing may be written beside the file either: read it without locks
};

// Raises -2147467259 for files that are missing, folders, Access files (naming their format), files
// that are no SQLite database, and SQLite databases that are no register.
void requireRegister(const std::string& path);

// Raises -2147467259 when there is anything at the path.
void requireNothing(const std::string& path);

// Removes the file and its log, as far as they are there.
void removeFiles(const std::string& path) noexcept;

// How the file and its folder can be used by this process.
[[nodiscard]] FileAccess accessTo(const std::string& path);

// Something that changes whenever the file is written: its times, size and whether a log lies
// beside it.
[[nodiscard]] std::string fileMark(const std::string& path);

}  // namespace kv::engine
