// SPDX-License-Identifier: Apache-2.0
#include "engine/sqlite/sqlite_file.h"

#include <fmt/format.h>

#include <array>
#include <filesystem>
#include <string_view>
#include <system_error>

#include "common/error.h"
#include "common/path.h"
#include "engine/sqlite/file_rights.h"
#include "engine/sqlite/sqlite_engine.h"

namespace kv::engine {

namespace fs = std::filesystem;

namespace {

[[noreturn]] void refuse(const std::string& path, Cause cause, std::string_view why) {
  raise(cause, fmt::format("{} '{}'", why, path), {});
}

// The formats by the byte behind "Standard Jet DB" or "Standard ACE DB".
std::string_view accessFormat(unsigned char version) {
  switch (version) {
    case 0: return "Access 97 or older (Jet 3)";
    case 1: return "Access 2000 to 2003 (Jet 4)";
    case 2: return "Access 2007 (ACE 12)";
    default: return "Access 2010 or newer (ACE 14)";
  }
}

}  // namespace

void requireFile(const std::string& path) {
  std::error_code problem;
  const auto status = fs::status(pathOf(path), problem);
  if (!fs::exists(status)) refuse(path, Cause::NoSuchPlace, "There is no such file:");
  if (!fs::is_regular_file(status)) refuse(path, Cause::NotARegister, "This is not a file:");
  if (!mayRead(pathOf(path)))
    refuse(path, Cause::Denied, "The file could not be opened for reading:");
}

void requireRegister(sqlite3* connection, const std::string& path) {
  sqlite3_file* file = nullptr;
  sqlite3_file_control(connection, "main", SQLITE_FCNTL_FILE_POINTER, &file);
  std::array<char, 100> header{};
  const int read = file->pMethods->xRead(file, header.data(), header.size(), 0);
  if (read != SQLITE_OK && read != SQLITE_IOERR_SHORT_READ)
    refuse(path, Cause::DiskError, "The file could not be read:");
  const std::string_view bytes(header.data(), header.size());
  const std::string_view name = bytes.substr(4, 15);
  if (name == "Standard Jet DB" || name == "Standard ACE DB")
    refuse(path, Cause::NotARegister,
           fmt::format("This is an Access database file, {}, not a register:",
                       accessFormat(static_cast<unsigned char>(bytes[20]))));
  if (!bytes.starts_with(std::string_view("SQLite format 3\0", 16)) || read != SQLITE_OK)
    refuse(path, Cause::NotARegister, "The file is not a register:");
  constexpr std::size_t kMarkAt = 68;  // SQLite's application id, most significant byte first
  unsigned mark = 0;
  for (std::size_t i = 0; i < 4; ++i)
    mark = (mark << 8U) | static_cast<unsigned char>(bytes[kMarkAt + i]);
  if (mark != static_cast<unsigned>(kRegisterMark))
    refuse(path, Cause::NotARegister, "The file is an SQLite database, but not a register:");
}

void requireNothing(const std::string& path) {
  std::error_code problem;
  if (fs::exists(fs::symlink_status(pathOf(path), problem)))
    refuse(path, Cause::SomethingThere, "There is already something of this name:");
}

void removeFiles(const std::string& path) noexcept {
  for (const char* suffix : {"", "-wal", "-shm"}) {
    std::error_code problem;
    fs::remove(pathOf(path + suffix), problem);
  }
}

FileAccess accessTo(const std::string& path) {
  const fs::path file = pathOf(path);
  const fs::path folder = file.has_parent_path() ? file.parent_path() : fs::path(".");
  if (mayWrite(folder)) return mayWrite(file) ? FileAccess::ReadWrite : FileAccess::ReadOnly;
  // With the log's files in place a reader needs no new ones.
  std::error_code problem;
  if (fs::exists(pathOf(path + "-wal"), problem) && fs::exists(pathOf(path + "-shm"), problem))
    return FileAccess::ReadOnly;
  return FileAccess::Unchanging;
}

std::string fileMark(const std::string& path) {
  std::error_code problem;
  const auto file = pathOf(path);
  const auto size = fs::file_size(file, problem);
  const auto time = fs::last_write_time(file, problem).time_since_epoch().count();
  const bool log = fs::exists(pathOf(path + "-wal"), problem);
  return fmt::format("{} {} {}", size, time, log);
}

}  // namespace kv::engine
