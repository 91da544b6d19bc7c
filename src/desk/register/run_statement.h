// SPDX-License-Identifier: Apache-2.0
// Running a statement of the register's SQL dialect.
#pragma once

#include <cstdint>
#include <string>

#include "desk/session.h"
#include "recordset/recordset.h"

namespace kv::desk {

struct StatementResult {
  Ref<Recordset> rows;        // of a SELECT; no object for another statement
  std::int32_t affected = 0;  // rows that it changed
};

// For administrators; whoever reads statements one by one asks before the first.
void requireMayRunStatements(const Session& session);
[[nodiscard]] StatementResult runStatement(const Session& session, const std::string& text);

}  // namespace kv::desk
