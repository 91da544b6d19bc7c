// SPDX-License-Identifier: Apache-2.0
// What is pending in a set: an edit of its current row, or an addition.
#pragma once

#include "engine/row_block.h"
#include "recordset/recordset.h"
#include "recordset/row_source.h"

namespace kv {

struct Recordset::Pending {
  bool adding = false;
  RowEdit values;
  RowKey row;                 // the row that is edited
  engine::RowBlock original;  // the row as read for this edit; empty when adding
  Position left;              // where an addition began
};

}  // namespace kv
