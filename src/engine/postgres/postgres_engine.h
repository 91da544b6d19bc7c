// SPDX-License-Identifier: Apache-2.0
// The PostgreSQL engine; only open.cpp makes one.
#pragma once

#include <memory>

#include "engine/engine.h"
#include "engine/open.h"

namespace kv::engine {

// `options.location` is a postgresql:// URI; the register is what the connection's first schema
// holds.
[[nodiscard]] std::unique_ptr<Engine> openPostgres(const OpenOptions& options);

}  // namespace kv::engine
