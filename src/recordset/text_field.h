// SPDX-License-Identifier: Apache-2.0
// The rule by which user text goes into fields and comes out of them: an empty string is stored as
// Null, and Null reads as an empty string.
#pragma once

#include <string>

#include "common/convert.h"
#include "recordset/recordset.h"

namespace kv {

inline void setFieldOrNull(const Recordset& row, const char* column, const std::string& text) {
  row.Fields(column)->Value(textOrNull(text));
}

[[nodiscard]] inline std::string fieldText(const Recordset& row, const char* column) {
  return joinText(row.Fields(column)->Value());
}

}  // namespace kv
