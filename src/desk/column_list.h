// SPDX-License-Identifier: Apache-2.0
// Lists of columns as people write them. They go into a statement, so nothing but
// columns gets through.
#pragma once

#include <string>

#include "recordset/database.h"

namespace kv::desk {

// "Title, Number" as a select list of a table: its columns in brackets, or * alone. Raises 3265 for
// a name that is no column of the table.
[[nodiscard]] std::string selectList(const Database& database, const std::string& table,
                                     const std::string& columns);

// The same as an order; each column may have asc or desc behind it.
[[nodiscard]] std::string sortList(const Database& database, const std::string& table,
                                   const std::string& columns);

}  // namespace kv::desk
