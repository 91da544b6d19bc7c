// SPDX-License-Identifier: Apache-2.0
// Connection: the database object that record sets are opened and statements executed on.
#pragma once

#include <chrono>
#include <cstdint>
#include <fstream>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "common/export.h"
#include "common/ref.h"
#include "common/variant.h"
#include "recordset/recordset.h"

namespace kv {

class Database;
class Transaction;

// Sees each text given to OpenRecordset and Execute, exactly as given and before anything is done
// with it, malformed ones too. The components' own reads and writes (configuration, rights,
// counters, saved queries) do not pass here.
using StatementObserver = std::function<void(std::string_view)>;

class KVVESK_API kvConnection : public Object {
 public:
  // Opens the register that the connection string names. Raises -2147467259 with the cause.
  [[nodiscard]] static Ref<kvConnection> open(const std::string& ConnectionString);
  kvConnection(std::string connectionString, std::shared_ptr<Database> database);
  ~kvConnection() override;
  kvConnection(const kvConnection&) = delete;
  kvConnection& operator=(const kvConnection&) = delete;
  kvConnection(kvConnection&&) = delete;
  kvConnection& operator=(kvConnection&&) = delete;

  // Opens a record set over a SELECT. Another statement is executed, and the set that comes back is
  // closed. CursorType and LockType as in constants.h; Options says that the text is a statement,
  // which it always is.
  [[nodiscard]] Ref<Recordset> OpenRecordset(const std::string& SQL,
                                             std::int32_t CursorType = kKeyset,
                                             std::int32_t LockType = kOptimistic,
                                             std::int32_t Options = 3);
  // Executes an INSERT, UPDATE or DELETE; RecordsAffected receives how many rows it changed. A
  // SELECT is checked, not run, and gives 0.
  void Execute(const std::string& SQL, std::int32_t& RecordsAffected, std::int32_t Options = 1);
  // Ends the connection for everybody who shares it; record sets that are open then raise 3709.
  // Closing twice is allowed.
  void Close();

  [[nodiscard]] bool isOpen() const noexcept;
  [[nodiscard]] const std::string& ConnectionString() const noexcept { return connectionString_; }

  // A transaction of the client's; operations inside it become marks in it. They nest; Commit and
  // Rollback raise 3219 when none is open.
  void BeginTrans();
  void CommitTrans();
  void RollbackTrans();

  // Adds an observer; it is called until the connection closes.
  void Observe(StatementObserver observer) { observers_.push_back(std::move(observer)); }
  // The path of a log of every statement text, one per line, with \ , CR and LF written as \\, \r
  // and \n. An empty path turns it off; a path that cannot be written raises -2147467259.
  [[nodiscard]] const std::string& StatementLog() const noexcept { return logPath_; }
  void StatementLog(const std::string& path);

  // Makes the running statement fail soon. May be called from a signal handler or another thread.
  void Interrupt() noexcept;
  // How long one statement may run; zero for as long as it likes.
  void TimeLimit(std::chrono::milliseconds limit);

  // Lets `users` keep users, their actions and their saved queries: statements that name only those
  // tables run there, whichever of the two connections they are given to; all others run here.
  // Closing this one closes both.
  void keepUsersIn(const Ref<kvConnection>& users);

  // The floor below, for the components' own reads and for tools.
  [[nodiscard]] const std::shared_ptr<Database>& database() const noexcept { return database_; }

 private:
  void observe(std::string_view text);

  std::string connectionString_;
  std::shared_ptr<Database> database_;
  std::vector<StatementObserver> observers_;
  std::string logPath_;
  std::ofstream log_;
  std::vector<std::unique_ptr<Transaction>> transactions_;
};

}  // namespace kv
