// ClientTransaction: everything a verb tests and writes, kept together or not at all.
#pragma once

#include <exception>

#include "cli/options.h"

namespace kv::cli {

class ClientTransaction {
 public:
  // Takes the write lock: what is tested from now on still holds when it is written.
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
