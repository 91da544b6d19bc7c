#include "kvdata/engine/open.h"

#include <filesystem>

#include "common/text.h"
#include "kvdata/engine/postgres/postgres_engine.h"
#include "kvdata/engine/sqlite/sqlite_engine.h"

namespace kv::engine {

namespace {

bool isServer(const OpenOptions& options) {
  for (const std::string_view scheme : {"postgresql://", "postgres://"})
    if (equalNoCase(std::string_view(options.location).substr(0, scheme.size()), scheme))
      return true;
  return false;
}

}  // namespace

std::unique_ptr<Engine> open(const OpenOptions& options) {
  return isServer(options) ? openPostgres(options) : openSqlite(options);
}

bool sameDatabase(const std::string& a, const std::string& b) noexcept {
  const auto path = [](const std::string& text) {
    return std::filesystem::path(reinterpret_cast<const char8_t*>(text.c_str()));
  };
  std::error_code error;
  return a == b || std::filesystem::equivalent(path(a), path(b), error);
}

// On a server the transaction that made the tables has taken them back.
void discard(const OpenOptions& options) noexcept {
  if (!isServer(options)) discardSqlite(options);
}

}  // namespace kv::engine
