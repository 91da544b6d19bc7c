// SPDX-License-Identifier: Apache-2.0
#include "engine/open.h"

#include <filesystem>

#include "common/path.h"
#include "common/text.h"
#include "engine/postgres/postgres_engine.h"
#include "engine/sqlite/sqlite_engine.h"

namespace kv::engine {

bool isServer(std::string_view location) noexcept {
  for (const std::string_view scheme : {"postgresql://", "postgres://"})
    if (equalNoCase(location.substr(0, scheme.size()), scheme)) return true;
  return false;
}

std::unique_ptr<Engine> open(const OpenOptions& options) {
  return isServer(options.location) ? openPostgres(options) : openSqlite(options);
}

bool sameDatabase(const std::string& a, const std::string& b) noexcept {
  std::error_code error;
  return a == b || std::filesystem::equivalent(pathOf(a), pathOf(b), error);
}

// On a server the transaction that made the tables has taken them back.
void discard(const OpenOptions& options) noexcept {
  if (!isServer(options.location)) discardSqlite(options);
}

}  // namespace kv::engine
