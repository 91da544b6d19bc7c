// What PostgreSQL reports, as the errors that clients know.
#pragma once

#include <libpq-fe.h>

#include <string>
#include <string_view>

namespace kv::engine {

// Raises what a failed result stands for. `outcomeUnknown`: the connection went while something was
// being kept, and whether it was cannot be told.
[[noreturn]] void raisePostgres(const PGconn* connection, const PGresult* result,
                                bool outcomeUnknown = false);
// Raises -2147467259 with a cause in a sentence and the server's own words behind it.
[[noreturn]] void raisePostgres(std::string_view cause, std::string_view message);

}  // namespace kv::engine
