#include "kvdata/engine/open.h"

#include "common/error.h"
#include "common/text.h"
#include "kvdata/engine/sqlite/sqlite_engine.h"

namespace kv::engine {

std::unique_ptr<Engine> open(const OpenOptions& options) {
  for (const std::string_view scheme : {"postgresql://", "postgres://"})
    if (equalNoCase(std::string_view(options.location).substr(0, scheme.size()), scheme))
      throw Error(
          kEngineFailure, "kvData",
          "This build has no PostgreSQL engine. Locations that begin with postgresql:// are "
          "reserved for it.");
  return openSqlite(options);
}

void discard(const OpenOptions& options) noexcept { discardSqlite(options); }

}  // namespace kv::engine
