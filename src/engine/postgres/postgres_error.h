// SPDX-License-Identifier: Apache-2.0
// What PostgreSQL reports, as the errors that clients know.
#pragma once

#include <libpq-fe.h>

#include <string_view>

#include "common/cause.h"

namespace kv::engine {

// Raises what a failure that the server reports stands for.
[[noreturn]] void raisePostgres(const PGresult* result);
// Raises that the connection is gone. `outcomeUnknown`: something was being kept, and whether it
// was cannot be told.
[[noreturn]] void raiseLost(std::string_view message, bool outcomeUnknown);
// Raises -2147467259 with a sentence of its own and the server's own words behind it.
[[noreturn]] void raiseServer(Cause cause, std::string_view sentence, std::string_view message);

}  // namespace kv::engine
