// Making a new register.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "common/ref.h"
#include "kvdata/connection.h"

namespace kv {

// Makes a database with the given tables, and then whatever `fill` adds, in one transaction, marked
// as a register. Raises and passes on as createRegister does.
[[nodiscard]] Ref<kvConnection> createWithTables(
    const std::string& ConnectionString, const std::vector<TableInfo>& tables,
    const std::function<void(const std::shared_ptr<Database>&)>& fill);

// Makes the register with all tables and first values, and then whatever `fill` adds, in one
// transaction. Raises -2147467259 when something is there already or it cannot be made, and passes
// on what `fill` raises; then nothing is left behind.
[[nodiscard]] Ref<kvConnection> createRegister(
    const std::string& ConnectionString,
    const std::function<void(const std::shared_ptr<Database>&)>& fill = {});

// The same for a database of users and their actions, with the tables for those as they are given.
[[nodiscard]] Ref<kvConnection> createUserDatabase(
    const std::string& ConnectionString, std::vector<TableInfo> tables,
    const std::function<void(const std::shared_ptr<Database>&)>& fill);
[[nodiscard]] Ref<kvConnection> createUserDatabase(const std::string& ConnectionString);

}  // namespace kv
