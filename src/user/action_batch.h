// SPDX-License-Identifier: Apache-2.0
// Actions on their way into the table that their assignees read.
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "common/catalog.h"
#include "common/ref.h"
#include "common/sql_value.h"
#include "data/connection.h"
#include "recordset/recordset.h"

namespace kv {

// Collected first, however often, and then written together.
class ActionBatch {
 public:
  // Of actions as `rsActions` has them; raises 3265 for a column that the table does not have.
  ActionBatch(const Ref<kvConnection>& connection, Ref<Recordset> rsActions);

  // Takes every row as it stands now, a pending one saved first, and leaves the set behind the
  // last. Returns how many. Numbers are given anew.
  std::int32_t take();
  // Writes what was taken, all of it or nothing.
  void store();

 private:
  struct Column {
    Ref<Field> from;
    ColumnType type;
    int size;
  };

  Ref<kvConnection> connection_;
  std::shared_ptr<Database> database_;
  const TableInfo* table_;
  Ref<Recordset> actions_;
  std::vector<Column> columns_;
  std::vector<int> places_;  // of the same columns in the table
  std::vector<std::vector<SqlValue>> rows_;
};

}  // namespace kv
