// SPDX-License-Identifier: Apache-2.0
// In place of the engine, in builds without libpq.
#include "common/error.h"
#include "engine/postgres/postgres_engine.h"

namespace kv::engine {

std::unique_ptr<Engine> openPostgres(const OpenOptions&) {
  throw Error(kEngineFailure, "kvData",
              "This build has no PostgreSQL: it opens registers in files only.");
}

}  // namespace kv::engine
