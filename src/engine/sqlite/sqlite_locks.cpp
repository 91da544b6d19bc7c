// SPDX-License-Identifier: Apache-2.0
#include "engine/sqlite/sqlite_locks.h"

#include <sqlite3.h>

#include <algorithm>
#include <mutex>
#include <string_view>
#include <thread>
#include <vector>

namespace kv::engine {

namespace {

struct Holder {
  sqlite3* connection;
  std::thread::id thread;
};
struct Holders {
  std::mutex mutex;
  std::vector<Holder> list;
};

// Never destroyed: connections may go after everything else.
Holders& holders() {
  static auto& instance = *new Holders;
  return instance;
}

// The full path, links followed: the same for every connection to a file.
std::string_view fileOf(sqlite3* connection) noexcept {
  const char* name = sqlite3_db_filename(connection, "main");
  return name == nullptr ? std::string_view() : std::string_view(name);
}

}  // namespace

void writeLockTaken(sqlite3* connection) {
  auto& known = holders();
  const std::lock_guard lock(known.mutex);
  known.list.push_back({connection, std::this_thread::get_id()});
}

void writeLockGiven(sqlite3* connection) noexcept {
  auto& known = holders();
  const std::lock_guard lock(known.mutex);
  std::erase_if(known.list, [&](const Holder& holder) { return holder.connection == connection; });
}

bool ownThreadHoldsLock(sqlite3* connection) noexcept {
  auto& known = holders();
  const std::lock_guard lock(known.mutex);
  return std::any_of(known.list.begin(), known.list.end(), [&](const Holder& holder) {
    // A connection is looked at on its own thread only. Some failures end a transaction without
    // anybody's asking.
    return holder.connection != connection && holder.thread == std::this_thread::get_id() &&
           sqlite3_get_autocommit(holder.connection) == 0 &&
           fileOf(holder.connection) == fileOf(connection);
  });
}

}  // namespace kv::engine
