// SPDX-License-Identifier: Apache-2.0
// The one place that knows which engines there are.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "engine/engine.h"

namespace kv::engine {

struct OpenOptions {
  std::string location;  // a file's path, or postgresql://...
  bool create = false;   // make a new, empty database; what exists already is refused
  std::chrono::milliseconds lockTimeout{5000};  // how long to wait for another writer
  int cacheMiB = 32;                            // page cache of this connection
  int memoryMapMiB = 256;  // part of the file that is read through a memory map
  int pageLimit = 0;       // most pages the file may grow to; 0 is no limit
};

// Whether a location is a server's.
[[nodiscard]] bool isServer(std::string_view location) noexcept;

// Takes back what opening with `create` has made, when filling it failed. The engine must be gone.
void discard(const OpenOptions& options) noexcept;

// Whether two locations are one database. Two names of one server are taken for two.
[[nodiscard]] bool sameDatabase(const std::string& a, const std::string& b) noexcept;

// Raises -2147467259, the first sentence naming the cause: no such file, not a register, an Access
// file, ...
[[nodiscard]] std::unique_ptr<Engine> open(const OpenOptions& options);

}  // namespace kv::engine
