// SPDX-License-Identifier: Apache-2.0
// The columns of a statement's result as record sets show them.
#pragma once

#include <memory>
#include <vector>

#include "recordset/database.h"
#include "recordset/row_source.h"

namespace kv {

// Made once for a shape and shared by its sets.
[[nodiscard]] std::shared_ptr<const std::vector<SourceColumn>> sharedColumns(StatementShape& shape);

}  // namespace kv
