// SPDX-License-Identifier: Apache-2.0
// Making a database of other tables than a new register has.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "common/catalog.h"
#include "common/ref.h"
#include "data/connection.h"

namespace kv {

// Makes a database with the given tables, and then whatever `fill` adds, in one transaction, marked
// as a register. Raises and passes on as createRegister does.
[[nodiscard]] Ref<kvConnection> createWithTables(
    const std::string& ConnectionString, const std::vector<TableInfo>& tables,
    const std::function<void(const std::shared_ptr<Database>&)>& fill);

// createUserDatabase with the tables for users and their actions as they are given.
[[nodiscard]] Ref<kvConnection> createUserDatabase(
    const std::string& ConnectionString, std::vector<TableInfo> tables,
    const std::function<void(const std::shared_ptr<Database>&)>& fill);

}  // namespace kv
