// SPDX-License-Identifier: Apache-2.0
// What an export does not carry, found by importing it and comparing the registers.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "recordset/database.h"

namespace kv::desk {

struct Difference {
  std::string what;        // a table, or one of its columns
  std::string how;         // "3 rows are not carried"
  bool essential = false;  // it belongs to what the format is there to carry
};

// Every row and value of `from` that `to`, a register made of an import of its export, does not
// have, and rows that only `to` has. Numbers that are counted anew and a first user are left out.
[[nodiscard]] std::vector<Difference> differences(const std::shared_ptr<Database>& from,
                                                  const std::shared_ptr<Database>& to);

}  // namespace kv::desk
