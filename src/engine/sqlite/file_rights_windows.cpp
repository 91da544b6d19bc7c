// SPDX-License-Identifier: Apache-2.0
#include <windows.h>

#include "engine/sqlite/file_rights.h"

namespace kv::engine {

namespace {

// Only opening says what the lists of rights come to. Locks are a handle's own here, so that those
// of other handles to the file stay.
bool opens(const std::filesystem::path& path, DWORD rights) noexcept {
  constexpr DWORD kBesideAnybody = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
  HANDLE handle = CreateFileW(path.c_str(), rights, kBesideAnybody, nullptr, OPEN_EXISTING,
                              FILE_FLAG_BACKUP_SEMANTICS, nullptr);  // folders, too
  if (handle == INVALID_HANDLE_VALUE) return GetLastError() == ERROR_SHARING_VIOLATION;
  CloseHandle(handle);
  return true;
}

}  // namespace

bool mayRead(const std::filesystem::path& path) noexcept { return opens(path, FILE_READ_DATA); }

// The right to write into a file has the number of the right to add one to a folder.
bool mayWrite(const std::filesystem::path& path) noexcept { return opens(path, FILE_WRITE_DATA); }

}  // namespace kv::engine
