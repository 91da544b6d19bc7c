// SPDX-License-Identifier: Apache-2.0
#include "engine/postgres/postgres_connection.h"

#include <fmt/format.h>
#include <poll.h>

#include <algorithm>
#include <array>
#include <exception>
#include <mutex>
#include <thread>

#include "common/error.h"
#include "engine/postgres/postgres_error.h"

namespace kv::engine {

namespace {

constexpr const char* kGuard = "kv_guard";
constexpr int kOldestServer = 130000;

bool isFailure(const PGresult* result) noexcept {
  const auto status = PQresultStatus(result);
  return status != PGRES_COMMAND_OK && status != PGRES_TUPLES_OK && status != PGRES_SINGLE_TUPLE &&
         status != PGRES_PIPELINE_SYNC;
}

// Hands a row over. What that raises must wait: all rows have to be taken in before anything else
// can be sent.
void take(const PostgresConnection::RowCall& row, const PGresult* result,
          std::exception_ptr& unreadable) {
  if (PQntuples(result) == 0 || unreadable) return;
  try {
    row(result);
  } catch (...) {
    unreadable = std::current_exception();
  }
}

// Connections with a transaction under way, and the thread that will end it.
struct OpenTransactions {
  struct One {
    PostgresConnection* connection;
    std::thread::id thread;
  };
  std::mutex mutex;
  std::vector<One> list;

  // Never destroyed: connections may go after everything else.
  static OpenTransactions& all() {
    static auto& instance = *new OpenTransactions;
    return instance;
  }
  void add(PostgresConnection* connection) {
    remove(connection);
    const std::lock_guard lock(mutex);
    list.push_back({connection, std::this_thread::get_id()});
  }
  void remove(PostgresConnection* connection) noexcept {
    const std::lock_guard lock(mutex);
    std::erase_if(list, [&](const One& one) { return one.connection == connection; });
  }
  // Those of this thread beside one connection's.
  std::vector<PostgresConnection*> beside(const PostgresConnection* connection) {
    const std::lock_guard lock(mutex);
    std::vector<PostgresConnection*> out;
    for (const One& one : list)
      if (one.connection != connection && one.thread == std::this_thread::get_id())
        out.push_back(one.connection);
    return out;
  }
};

std::string savepointText(int mark) { return fmt::format("SAVEPOINT kv_{}", mark); }

}  // namespace

std::vector<const char*> PostgresParams::pointers() const {
  std::vector<const char*> out;
  out.reserve(values.size());
  for (std::size_t i = 0; i < values.size(); ++i)
    out.push_back(nulls[i] ? nullptr : values[i].c_str());
  return out;
}

PostgresConnection::PostgresConnection(OpenOptions options) : options_(std::move(options)) {
  open();
}

PostgresConnection::~PostgresConnection() { OpenTransactions::all().remove(this); }

void PostgresConnection::open() {
  // What stands before the location can be said otherwise in it, what stands behind cannot.
  const std::array<const char*, 6> keys = {"connect_timeout", "fallback_application_name",
                                           "dbname",          "client_encoding",
                                           "options",         nullptr};
  const std::array<const char*, 6> values = {"15",   "kvvesk", options_.location.c_str(),
                                             "UTF8", nullptr,  nullptr};
  connection_.reset(PQconnectdbParams(keys.data(), values.data(), 1));
  ++generation_;
  open_ = broken_ = guarded_ = false;
  due_.clear();
  forgotten_.clear();
  cancel_.reset();
  if (PQstatus(connection_.get()) != CONNECTION_OK) {
    const std::string message = PQerrorMessage(connection_.get());
    connection_.reset();
    raiseServer(Cause::CannotOpen, "The server cannot be reached, or does not let this user in.",
                message);
  }
  cancel_.reset(PQgetCancel(connection_.get()));
  PQsetNoticeProcessor(
      connection_.get(), [](void*, const char*) {}, nullptr);
  // Everything by which one server could read or write our texts differently from another.
  const std::string settings = fmt::format(
      "SET DateStyle = 'ISO, MDY'; SET standard_conforming_strings = on; SET extra_float_digits = "
      "1; SET default_transaction_isolation = 'read committed'; SET lock_timeout = {}; SET "
      "statement_timeout = {}; SELECT current_setting('server_encoding'), "
      "current_setting('server_version_num')::int, pg_is_in_recovery() OR "
      "current_setting('default_transaction_read_only')::boolean",
      options_.lockTimeout.count(), limit_.count());
  const Result result(PQexec(connection_.get(), settings.c_str()));
  ++roundTrips_;
  if (isFailure(result.get())) failed(result.get(), false);
  if (std::string_view(PQgetvalue(result.get(), 0, 0)) != "UTF8")
    raiseServer(Cause::CannotOpen, "The database does not keep its text in UTF-8.",
                PQgetvalue(result.get(), 0, 0));
  if (PQserverVersion(connection_.get()) < kOldestServer)
    raiseServer(Cause::CannotOpen, "The server is older than PostgreSQL 13.",
                PQgetvalue(result.get(), 0, 1));
  readOnly_ = PQgetvalue(result.get(), 0, 2)[0] == 't';
}

void PostgresConnection::requireOpen() {
  if (connection_ && PQstatus(connection_.get()) == CONNECTION_OK) return;
  if (!open_) open();
}

void PostgresConnection::failed(const PGresult* result, bool writes) {
  // The server gives every failure a code; one without comes from this side of a broken wire.
  const bool lost = PQstatus(connection_.get()) != CONNECTION_OK || result == nullptr ||
                    PQresultErrorField(result, PG_DIAG_SQLSTATE) == nullptr;
  if (lost) {
    const bool alone = !open_;
    open_ = broken_ = guarded_ = false;
    due_.clear();
    const std::string message = PQerrorMessage(connection_.get());
    connection_.reset();
    raiseLost(message, writes && alone);
  }
  if (open_) {
    broken_ = true;
    if (guarded_) {
      const Result back(PQexec(connection_.get(), fmt::format("ROLLBACK TO {}", kGuard).c_str()));
      ++roundTrips_;
      broken_ = isFailure(back.get());
    }
  }
  if (std::exchange(heldUpByItself_, false))
    throw Error(kEngineFailure, "kvData", std::string(kLockedByItself));
  raisePostgres(result);
}

bool PostgresConnection::holdsUp(int backend) noexcept {
  if (!connection_ || PQtransactionStatus(connection_.get()) != PQTRANS_INTRANS) return false;
  const std::string ask = fmt::format("SELECT {} = ANY (pg_blocking_pids({}))",
                                      PQbackendPID(connection_.get()), backend);
  const Result answer(PQexec(connection_.get(), ask.c_str()));
  ++roundTrips_;
  return PQresultStatus(answer.get()) == PGRES_TUPLES_OK &&
         PQgetvalue(answer.get(), 0, 0)[0] == 't';
}

Result PostgresConnection::nextAnswer() {
  constexpr int kPatience = 50;  // milliseconds; most locks are held for a moment
  while (!heldUpByItself_ && PQisBusy(connection_.get()) != 0) {
    const auto others = OpenTransactions::all().beside(this);
    if (others.empty()) break;
    pollfd answer{.fd = PQsocket(connection_.get()), .events = POLLIN, .revents = 0};
    if (poll(&answer, 1, kPatience) != 0) {
      if (PQconsumeInput(connection_.get()) != 1) break;
      continue;
    }
    const int backend = PQbackendPID(connection_.get());
    heldUpByItself_ = std::any_of(others.begin(), others.end(),
                                  [&](auto* other) { return other->holdsUp(backend); });
    if (heldUpByItself_) interrupt();
  }
  return Result(PQgetResult(connection_.get()));
}

void PostgresConnection::guard() {
  if (!guard_ || !open_ || broken_) return;
  if (guarded_) due_.push_back(fmt::format("RELEASE {}", kGuard));
  due_.push_back(fmt::format("SAVEPOINT {}", kGuard));
  guarded_ = true;
}

void PostgresConnection::send(const std::string& sql, const std::string& name,
                              const PostgresParams& params) {
  const auto values = params.pointers();
  const int count = static_cast<int>(values.size());
  const int sent = name.empty() ? PQsendQueryParams(connection_.get(), sql.c_str(), count, nullptr,
                                                    values.data(), nullptr, nullptr, 0)
                                : PQsendQueryPrepared(connection_.get(), name.c_str(), count,
                                                      values.data(), nullptr, nullptr, 0);
  if (sent != 1) failed(nullptr, false);
}

Result PostgresConnection::batch(std::size_t commands, bool writes, const RowCall& row) {
  ++roundTrips_;
  if (PQpipelineSync(connection_.get()) != 1) failed(nullptr, writes);
  Result last;
  Result failure;
  std::exception_ptr unreadable;
  bool begun = false;  // the last command's answer
  for (std::size_t done = 0; done < commands;) {
    if (row && !begun && done + 1 == commands) {
      begun = true;
      (void)PQsetSingleRowMode(connection_.get());
    }
    Result next = nextAnswer();
    if (!next)
      ++done;
    else if (isFailure(next.get()))
      failure = failure ? std::move(failure) : std::move(next);
    else if (row && begun)
      take(row, next.get(), unreadable);
    else
      last = std::move(next);
  }
  const Result sync(PQgetResult(connection_.get()));
  const bool good = PQresultStatus(sync.get()) == PGRES_PIPELINE_SYNC &&
                    PQexitPipelineMode(connection_.get()) == 1;
  if (failure || !good) failed(failure.get(), writes);
  if (unreadable) std::rethrow_exception(unreadable);
  return last;
}

void PostgresConnection::sendDue() {
  if (due_.empty()) return;
  const auto due = std::exchange(due_, {});
  (void)PQenterPipelineMode(connection_.get());
  for (const auto& command : due) send(command, {}, {});
  (void)batch(due.size(), false);
}

// Not as a batch of one: libpq gives the first command of a batch its rows one by one when a
// statement before it has asked for that.
Result PostgresConnection::runWatchfully(const std::string& sql, const std::string& name,
                                         const PostgresParams& params, bool writes) {
  send(sql, name, params);
  ++roundTrips_;
  Result last;
  while (Result next = nextAnswer()) last = std::move(next);
  if (!last || isFailure(last.get())) failed(last.get(), writes);
  return last;
}

Result PostgresConnection::run(const std::string& sql, const std::string& name,
                               const PostgresParams& params, bool writes) {
  requireOpen();
  guard();
  heldUpByItself_ = false;
  // Those who may have to be stopped are not waited for blindly.
  if (due_.empty() && !OpenTransactions::all().beside(this).empty())
    return runWatchfully(sql, name, params, writes);
  if (due_.empty()) {
    const auto values = params.pointers();
    const int count = static_cast<int>(values.size());
    ++roundTrips_;
    Result result(name.empty() ? PQexecParams(connection_.get(), sql.c_str(), count, nullptr,
                                              values.data(), nullptr, nullptr, 0)
                               : PQexecPrepared(connection_.get(), name.c_str(), count,
                                                values.data(), nullptr, nullptr, 0));
    if (isFailure(result.get())) failed(result.get(), writes);
    return result;
  }
  const auto due = std::exchange(due_, {});
  (void)PQenterPipelineMode(connection_.get());
  for (const auto& command : due) send(command, {}, {});
  send(sql, name, params);
  return batch(due.size() + 1, writes);
}

void PostgresConnection::stream(const std::string& sql, const std::string& name,
                                const PostgresParams& params, const RowCall& row) {
  requireOpen();
  guard();
  heldUpByItself_ = false;
  if (!due_.empty()) {
    const auto due = std::exchange(due_, {});
    (void)PQenterPipelineMode(connection_.get());
    for (const auto& command : due) send(command, {}, {});
    send(sql, name, params);
    (void)batch(due.size() + 1, false, row);
    return;
  }
  send(sql, name, params);
  ++roundTrips_;
  (void)PQsetSingleRowMode(connection_.get());
  Result failure;
  std::exception_ptr unreadable;
  while (Result next = nextAnswer()) {
    if (isFailure(next.get()))
      failure = std::move(next);
    else
      take(row, next.get(), unreadable);
  }
  if (failure) failed(failure.get(), false);
  if (unreadable) std::rethrow_exception(unreadable);
}

void PostgresConnection::prepare(const std::string& name, const std::string& sql) {
  requireOpen();
  guard();
  sendDue();
  if (!forgotten_.empty() && !broken_) {
    std::string text;
    for (const auto& old : std::exchange(forgotten_, {})) text += "DEALLOCATE " + old + ";";
    const Result result(PQexec(connection_.get(), text.c_str()));
    ++roundTrips_;
    if (isFailure(result.get())) failed(result.get(), false);
  }
  const Result result(PQprepare(connection_.get(), name.c_str(), sql.c_str(), 0, nullptr));
  ++roundTrips_;
  if (isFailure(result.get())) failed(result.get(), false);
}

void PostgresConnection::begin(Access access) {
  requireOpen();
  due_.emplace_back(access == Access::Write ? "BEGIN ISOLATION LEVEL READ COMMITTED READ WRITE"
                                            : "BEGIN ISOLATION LEVEL REPEATABLE READ READ ONLY");
  open_ = true;
  broken_ = guarded_ = false;
  OpenTransactions::all().add(this);
}

void PostgresConnection::commit() {
  OpenTransactions::all().remove(this);
  if (!due_.empty() && due_.front().starts_with("BEGIN")) {  // nothing was sent: nothing to keep
    due_.clear();
    open_ = false;
    return;
  }
  if (broken_) {
    rollback();
    raise(Cause::TransactionEnded);
  }
  heldUpByItself_ = false;
  due_.emplace_back("COMMIT");
  const auto due = std::exchange(due_, {});
  (void)PQenterPipelineMode(connection_.get());
  open_ = guarded_ = false;  // whatever becomes of it
  for (const auto& command : due) send(command, {}, {});
  (void)batch(due.size(), true);
}

void PostgresConnection::rollback() noexcept {
  OpenTransactions::all().remove(this);
  const bool sent = open_ && (due_.empty() || !due_.front().starts_with("BEGIN"));
  due_.clear();
  open_ = broken_ = guarded_ = false;
  if (!sent || !connection_ || PQstatus(connection_.get()) != CONNECTION_OK) return;
  const Result result(PQexec(connection_.get(), "ROLLBACK"));
  ++roundTrips_;
}

void PostgresConnection::savepoint(int mark) {
  if (guarded_) due_.push_back(fmt::format("RELEASE {}", kGuard));
  guarded_ = false;
  due_.push_back(savepointText(mark));
}

void PostgresConnection::release(int mark) {
  if (broken_) raise(Cause::TransactionEnded);
  guarded_ = false;
  if (!due_.empty() && due_.back() == savepointText(mark))
    due_.pop_back();
  else
    due_.push_back(fmt::format("RELEASE kv_{}", mark));
}

void PostgresConnection::rollbackTo(int mark) {
  guarded_ = broken_ = false;
  const auto unsent = std::find(due_.begin(), due_.end(), savepointText(mark));
  if (unsent != due_.end())
    due_.erase(unsent + 1, due_.end());
  else
    due_.assign(1, fmt::format("ROLLBACK TO kv_{}", mark));
}

void PostgresConnection::interrupt() noexcept {
  std::array<char, 256> message{};
  if (cancel_) (void)PQcancel(cancel_.get(), message.data(), static_cast<int>(message.size()));
}

void PostgresConnection::setTimeLimit(std::chrono::milliseconds limit) {
  limit_ = limit;
  execute(fmt::format("SET statement_timeout = {}", limit.count()));
}

}  // namespace kv::engine
