// SPDX-License-Identifier: Apache-2.0
// A connection to a PostgreSQL server: it sends what is due before a statement together with the
// statement, and opens itself again after it was lost.
#pragma once

#include <libpq-fe.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "engine/open.h"

namespace kv::engine {

struct ClearResult {
  void operator()(PGresult* result) const noexcept { PQclear(result); }
};
using Result = std::unique_ptr<PGresult, ClearResult>;

// Values of parameters in the text form of the protocol.
struct PostgresParams {
  std::vector<std::string> values;
  std::vector<bool> nulls;
  [[nodiscard]] std::vector<const char*> pointers() const;
};

class PostgresConnection {
 public:
  using RowCall = std::function<void(const PGresult*)>;

  // Raises when the server does not let us in. `options.location` is a postgresql:// URI.
  explicit PostgresConnection(OpenOptions options);
  ~PostgresConnection();
  PostgresConnection(const PostgresConnection&) = delete;
  PostgresConnection& operator=(const PostgresConnection&) = delete;
  PostgresConnection(PostgresConnection&&) = delete;
  PostgresConnection& operator=(PostgresConnection&&) = delete;

  // ---- statements ----

  // Runs a text, or with a name the statement prepared under it. One round trip, with everything
  // that is due before it. Raises what the server reports; `writes` says that the outcome is open
  // when the answer is lost.
  Result run(const std::string& sql, const std::string& name, const PostgresParams& params,
             bool writes);
  // As run, with `row` called for the rows as they come; nothing is kept.
  void stream(const std::string& sql, const std::string& name, const PostgresParams& params,
              const RowCall& row);
  void prepare(const std::string& name, const std::string& sql);
  // Lets the server forget a prepared statement, when there is something else to tell it.
  void forget(std::string name) { forgotten_.push_back(std::move(name)); }
  // One statement without parameters.
  void execute(const std::string& sql) { (void)run(sql, {}, {}, true); }

  // Changes whenever the connection was opened anew: prepared statements are gone then.
  [[nodiscard]] std::uint64_t generation() const noexcept { return generation_; }

  // ---- transactions ----

  void begin(Access access);
  void commit();
  void rollback() noexcept;
  [[nodiscard]] bool inTransaction() const noexcept { return open_; }
  void savepoint(int mark);
  void release(int mark);
  void rollbackTo(int mark);
  // Whether a statement that fails leaves everything else as it is.
  [[nodiscard]] bool survivesFailure() const noexcept { return !open_ || guard_; }
  // Whether the server answers: not in a transaction in which a statement has failed.
  [[nodiscard]] bool canAsk() const noexcept { return !broken_; }
  // While it is on, a statement that fails in a transaction leaves the transaction as it was before
  // that statement.
  void guardStatements(bool on) noexcept { guard_ = on; }

  [[nodiscard]] bool readOnly() const noexcept { return readOnly_; }
  void interrupt() noexcept;
  void setTimeLimit(std::chrono::milliseconds limit);

  // How often this connection has waited for the server.
  [[nodiscard]] std::uint64_t roundTrips() const noexcept { return roundTrips_; }

 private:
  struct Finish {
    void operator()(PGconn* connection) const noexcept { PQfinish(connection); }
  };
  struct FreeCancel {
    void operator()(PGcancel* cancel) const noexcept { PQfreeCancel(cancel); }
  };

  // The next answer to what was sent. Nobody waits for a lock that another connection of the same
  // thread holds: it could not give it up before the wait is over.
  Result nextAnswer();
  [[nodiscard]] Result runWatchfully(const std::string& sql, const std::string& name,
                                     const PostgresParams& params, bool writes);
  // Whether a connection to the server waits for what the transaction here has locked.
  [[nodiscard]] bool holdsUp(int backend) noexcept;

  void open();
  // Opens it again when it was lost with no transaction under way.
  void requireOpen();
  // Sends everything that is due in a round trip of its own.
  void sendDue();
  // The savepoint of the guard, when it is on, becomes due.
  void guard();
  void send(const std::string& sql, const std::string& name, const PostgresParams& params);
  // The answer to the last of `commands` sent in a batch; the first failure among them is raised.
  // With `row` the last one's rows go there as they come.
  Result batch(std::size_t commands, bool writes, const RowCall& row = {});
  [[noreturn]] void failed(const PGresult* result, bool writes);

  OpenOptions options_;
  std::unique_ptr<PGconn, Finish> connection_;
  std::unique_ptr<PGcancel, FreeCancel> cancel_;
  std::uint64_t generation_ = 0;
  std::uint64_t roundTrips_ = 0;
  std::vector<std::string> forgotten_;
  std::vector<std::string> due_;  // transaction commands not sent yet
  bool open_ = false;             // a transaction has begun, sent or due
  bool broken_ = false;  // a statement in it has failed: it must be undone, in part or whole
  bool guard_ = false;
  bool guarded_ = false;         // the guard's savepoint stands
  bool heldUpByItself_ = false;  // by another connection of the thread; the statement was stopped
  bool readOnly_ = false;
  std::chrono::milliseconds limit_{0};
};

}  // namespace kv::engine
