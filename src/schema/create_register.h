// SPDX-License-Identifier: Apache-2.0
// Making a new register.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "common/export.h"
#include "common/ref.h"
#include "data/connection.h"

namespace kv {

// Makes the register with all tables and first values, and then whatever `fill` adds, in one
// transaction. Raises -2147467259 when something is there already or it cannot be made, and passes
// on what `fill` raises; then nothing is left behind.
[[nodiscard]] KVVESK_API Ref<kvConnection> createRegister(
    const std::string& ConnectionString,
    const std::function<void(const std::shared_ptr<Database>&)>& fill = {});

// The same for a database of users and their actions.
[[nodiscard]] KVVESK_API Ref<kvConnection> createUserDatabase(const std::string& ConnectionString);

}  // namespace kv
