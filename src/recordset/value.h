// SPDX-License-Identifier: Apache-2.0
// Values between fields, where they are Variants, and rows, where they are what an engine stores.
#pragma once

#include "common/catalog.h"
#include "common/sql_value.h"
#include "common/variant.h"
#include "engine/row_block.h"

namespace kv {

// A stored value as the field of a column shows it: True and False for booleans, 16 or 32 bits for
// whole numbers, single precision where the column has it.
[[nodiscard]] Variant shownValue(const SqlValue& value, ColumnType type);
[[nodiscard]] Variant shownValue(const engine::RowBlock& block, std::size_t row, std::size_t column,
                                 ColumnType type);

// What a column stores of a value assigned to its field: text within its size, numbers rounded half
// to even, Null in a boolean as False. Raises 3421 for a value the field cannot hold.
[[nodiscard]] SqlValue storedValue(const Variant& value, ColumnType type, int size);

}  // namespace kv
