// ClientTransaction: everything a verb tests and writes, kept together or not at all.
#pragma once

#include <exception>
#include <string_view>

#include "cli/options.h"
#include "kvdata/operation.h"

namespace kv::cli {

class ClientTransaction {
 public:
  // On a file it takes the write lock: what is tested from now on still holds when it is written.
  // On a server only the rows that are locked do.
  explicit ClientTransaction(const Session& session)
      : connection_(session->DataServer()->Connection()) {
    connection_->BeginTrans();
  }
  ~ClientTransaction() {
    if (done_) return;
    try {
      connection_->RollbackTrans();
    } catch (const std::exception&) {  // the error that led here is the one to tell
    }
  }
  ClientTransaction(const ClientTransaction&) = delete;
  ClientTransaction& operator=(const ClientTransaction&) = delete;
  ClientTransaction(ClientTransaction&&) = delete;
  ClientTransaction& operator=(ClientTransaction&&) = delete;

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

}  // namespace kv::cli
