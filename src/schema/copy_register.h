// SPDX-License-Identifier: Apache-2.0
// Moving a register from one place to another, and from one engine to another.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "common/ref.h"
#include "data/connection.h"

namespace kv {

struct CopiedTable {
  std::string name;
  std::int64_t rows = 0;
  std::uint64_t checksum = 0;  // over keys and values of all rows, in the order of their keys
};

// Called with rows done, rows in all, and the table at work.
using CopyProgress = std::function<void(std::int64_t, std::int64_t, const std::string&)>;

// Makes a register at `to` that holds what the one of `from` holds: tables with their types, rows
// with their keys, counters where they stand. Everything is read as of one moment, read back from
// the new register and compared before it is kept. Raises -2147467259 when there is something at
// `to` already or when the comparison fails; then nothing is left there.
[[nodiscard]] std::vector<CopiedTable> copyRegister(const Ref<kvConnection>& from,
                                                    const std::string& to,
                                                    const CopyProgress& progress = {});

// Makes a database of users and actions at `to` that holds those of the register, wherever it keeps
// them. Otherwise as copyRegister.
[[nodiscard]] std::vector<CopiedTable> copyUsers(const Ref<kvConnection>& from,
                                                 const std::string& to,
                                                 const CopyProgress& progress = {});

// Row counts and checksums of a register as it is.
[[nodiscard]] std::vector<CopiedTable> tablesOf(const Ref<kvConnection>& connection);

}  // namespace kv
