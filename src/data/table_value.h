// SPDX-License-Identifier: Apache-2.0
// Reads and writes of single values by which the components keep their own settings. They go below
// the statement observer.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "common/variant.h"
#include "recordset/database.h"
#include "recordset/recordset.h"

namespace kv {

// Opens a set that the observer does not see.
[[nodiscard]] Ref<Recordset> openOwn(const std::shared_ptr<Database>& database,
                                     const std::string& sql, std::int32_t lockType = kOptimistic);

// The column as the catalog spells it; raises 3265 naming the key, -2147217865 for an unknown
// table.
[[nodiscard]] std::string columnOf(const Database& database, const std::string& table,
                                   const std::string& key);

// The value of a column in the first row for which `where` (a condition, or empty) holds. Null, and
// no row, give Empty.
[[nodiscard]] Variant tableValue(const std::shared_ptr<Database>& database,
                                 const std::string& table, const std::string& key,
                                 const std::string& where = {});
// Stores it there. Without a row it raises 3021.
void storeTableValue(const std::shared_ptr<Database>& database, const std::string& table,
                     const std::string& key, const Variant& value, const std::string& where = {});

}  // namespace kv
