// SPDX-License-Identifier: Apache-2.0
// Transaction: everything a use case tests and writes, kept together or not at all.
#pragma once

#include <exception>
#include <string_view>

#include "data/operation.h"
#include "desk/session.h"

namespace kv::desk {

class Transaction {
 public:
  // On a file it takes the write lock: what is tested from now on still holds when it is written.
  // On a server only the rows that are locked do.
  explicit Transaction(const Session& session) : connection_(session->DataServer()->Connection()) {
    connection_->BeginTrans();
  }
  ~Transaction() {
    if (done_) return;
    try {
      connection_->RollbackTrans();
    } catch (const std::exception&) {  // the error that led here is the one to tell
    }
  }
  Transaction(const Transaction&) = delete;
  Transaction& operator=(const Transaction&) = delete;
  Transaction(Transaction&&) = delete;
  Transaction& operator=(Transaction&&) = delete;

  void lock(std::string_view table, std::string_view column = {}, const SqlValue& value = {}) {
    lockRows(connection_, table, column, value);
  }

  // What a new identifier or name must not be yet is decided by one transaction at a time. A table
  // in which it is looked for may be empty, and rows of others that are not committed are not seen;
  // the register's settings are one row that is always there.
  void lockNewNames() { lock("VeskConfig"); }

  // Without it everything is undone at the end of the scope.
  void commit() {
    done_ = true;  // a commit that fails has undone everything
    connection_->CommitTrans();
  }

 private:
  Ref<kvConnection> connection_;
  bool done_ = false;
};

}  // namespace kv::desk
