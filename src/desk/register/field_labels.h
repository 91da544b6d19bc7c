// SPDX-License-Identifier: Apache-2.0
// What a register calls the fields of its records.
#pragma once

#include <map>
#include <memory>
#include <string>

#include "recordset/database.h"
#include "recordset/recordset.h"

namespace kv::desk {

// Labels by column; none for a column that has no other name than its own.
using Labels = std::map<std::string, std::string>;

// One record with what the register calls its fields.
struct Detail {
  Ref<Recordset> row;
  Labels labels;
};

// The labels kept in the one row of a configuration table.
[[nodiscard]] Labels labelsIn(const std::shared_ptr<Database>& database, const std::string& table);

}  // namespace kv::desk
