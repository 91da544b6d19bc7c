// SPDX-License-Identifier: Apache-2.0
// The column by which lists order documents.
#pragma once

#include <string>

#include "classes/rights/rights.h"
#include "classes/session/vesk.h"

namespace kv {

// As the register's options say at this moment.
[[nodiscard]] inline std::string documentOrder(const clsVesk& vesk) {
  return vesk.AppOption(aoDocSortByNum) ? "DocumentNumber" : "DocumentTitle";
}

}  // namespace kv
