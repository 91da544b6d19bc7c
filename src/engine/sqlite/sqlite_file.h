// SPDX-License-Identifier: Apache-2.0
// What a file is, before anything is read from it as a register.
//
// Nothing here opens the file. The locks by which SQLite keeps processes apart are a process's own,
// and closing any handle to the file gives all of them up, those of its other connections too: the
// next process to close the register would take itself for the last one and remove their log.
#pragma once

#include <sqlite3.h>

#include <string>

namespace kv::engine {

enum class FileAccess {
  ReadWrite,
  ReadOnly,    // the file may not be written, but its folder may hold the log's files
  Unchanging,  // nothing may be written beside the file either: read it without locks
};

// Raises -2147467259 for files that are missing, folders, and files that may not be read.
void requireFile(const std::string& path);

// Raises -2147467259 for Access files (naming their format), files that are no SQLite database, and
// SQLite databases that are no register. Looks at the file through the connection's own handle.
void requireRegister(sqlite3* connection, const std::string& path);

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
