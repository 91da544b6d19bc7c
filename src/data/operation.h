// SPDX-License-Identifier: Apache-2.0
// Operation: one thing that a caller asks of the library. Everything it writes through one
// connection is kept, or nothing is; inside a transaction of the client's it is a mark in that.
#pragma once

#include <string_view>

#include "common/sql_value.h"
#include "data/connection.h"
#include "recordset/database.h"
#include "recordset/edit.h"

namespace kv {

// Locks the rows in which `column` has `value`, or all of a table that has one, until the
// connection's transaction ends. Where a transaction that writes has everything locked, nothing is
// left to do.
void lockRows(const Ref<kvConnection>& connection, std::string_view table,
              std::string_view column = {}, const SqlValue& value = {});

// The same for the rows of `table` that have the text column `common` in common with the rows of
// `link` in which the text column `column` has `value`.
void lockLinkedRows(const Ref<kvConnection>& connection, std::string_view table,
                    std::string_view common, std::string_view link, std::string_view column,
                    std::string_view value);

class Operation {
 public:
  // What is tested afterwards still holds when it is written: a file is locked as a whole for its
  // one writer. On a server many write at a time, and an operation names the rows that it decides
  // about: those in which `column` has `value`, or all of a table that has one. They are locked
  // first.
  explicit Operation(const Ref<kvConnection>& connection);
  Operation(const Ref<kvConnection>& connection, std::string_view table);
  Operation(const Ref<kvConnection>& connection, std::string_view table, std::string_view column,
            const SqlValue& value);

  // Without it everything is undone at the end of the scope.
  void commit() { transaction_.commit(); }

  // A step of an operation that keeps what it has done when a later step fails: a failing step is
  // undone by itself, the ones before it are committed, and the error goes on.
  template <class Step>
  void keep(Step step) {
    try {
      Transaction mark(database_, engine::Access::Write);
      step();
      mark.commit();
    } catch (...) {
      commit();
      throw;
    }
  }

 private:
  Database& database_;
  Transaction transaction_;
};

// What a caller has pending in a set of his is no part of the operation that he hands it to: it
// must not be undone with it, as it would be once the operation's first move has saved it. Before
// the operation begins.
inline void savePending(const Ref<Recordset>& rs) {
  if (rs) rs->Update();
}

// A row being added to a set, by an operation that writes more than that row. When the operation
// fails the addition is taken back from the set: its number has gone back to the counter, and the
// rest of what belongs to it is not there.
class Addition : public Edit {
 public:
  explicit Addition(const Ref<Recordset>& rs) : Edit(rs) { rs->AddNew(); }
};

}  // namespace kv
