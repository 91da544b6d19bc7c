// SPDX-License-Identifier: Apache-2.0
// Changing the types of a table's columns.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "common/catalog.h"
#include "recordset/database.h"

namespace kv {

// Gives columns of a table other types, converting what they hold; the other columns, all rows,
// their keys, the counter and the indexes stay. Within the caller's transaction. The database takes
// on its new catalog at once; if the transaction is rolled back, the connection must be opened
// anew.
void changeColumns(const std::shared_ptr<Database>& database, const std::string& table,
                   const std::vector<ColumnInfo>& changes);

}  // namespace kv
