// SPDX-License-Identifier: Apache-2.0
#include "data/connection.h"

#include "common/error.h"
#include "common/path.h"
#include "data/connection_string.h"
#include "recordset/database.h"
#include "schema/register_schema.h"

namespace kv {

namespace {

Catalog catalogOf(engine::Engine& engine) { return Catalog(withSecondNames(engine.catalog())); }

}  // namespace

Ref<kvConnection> kvConnection::open(const std::string& ConnectionString) {
  auto engine = engine::open(parseConnectionString(ConnectionString));
  auto catalog = std::make_shared<const Catalog>(catalogOf(*engine));
  return makeRef<kvConnection>(ConnectionString,
                               std::make_shared<Database>(std::move(engine), std::move(catalog)));
}

kvConnection::kvConnection(std::string connectionString, std::shared_ptr<Database> database)
    : connectionString_(std::move(connectionString)), database_(std::move(database)) {
  database_->readCatalogBy(catalogOf);
}
kvConnection::~kvConnection() = default;

bool kvConnection::isOpen() const noexcept { return database_->isOpen(); }

void kvConnection::observe(std::string_view text) {
  if (log_.is_open()) {
    std::string line;
    line.reserve(text.size() + 1);
    for (const char c : text) {
      if (c == '\n')
        line += "\\n";
      else if (c == '\r')
        line += "\\r";
      else if (c == '\\')
        line += "\\\\";
      else
        line += c;
    }
    line += '\n';
    log_ << line << std::flush;
  }
  for (const auto& observer : observers_) observer(text);
}

Ref<Recordset> kvConnection::OpenRecordset(const std::string& SQL, std::int32_t CursorType,
                                           std::int32_t LockType, std::int32_t) {
  observe(SQL);
  return database_->withPresentTables([&] {
    PreparedStatement statement = database_->prepare(SQL);
    if (statement.isSelect())
      return Recordset::open(database_, std::move(statement), CursorType, LockType);
    database_->execute(statement);
    auto closed = Recordset::create();
    closed->CursorType(CursorType);
    closed->LockType(LockType);
    return closed;
  });
}

void kvConnection::Execute(const std::string& SQL, std::int32_t& RecordsAffected, std::int32_t) {
  observe(SQL);
  RecordsAffected = static_cast<std::int32_t>(
      database_->withPresentTables([&] { return database_->execute(SQL); }));
}

void kvConnection::Close() {
  transactions_.clear();
  database_->close();
  observers_.clear();
  log_.close();
}

void kvConnection::keepUsersIn(const Ref<kvConnection>& users) {
  Database::link(database_, users->database_, userTables(), std::string(kConfigTable));
}

void kvConnection::BeginTrans() {
  transactions_.push_back(
      std::make_unique<Transaction>(*database_, engine::Access::Write, Transaction::For::Client));
}

void kvConnection::CommitTrans() {
  if (transactions_.empty()) raise(kNotAllowed);
  // Gone whatever happens: a commit that fails has undone everything.
  const auto transaction = std::move(transactions_.back());
  transactions_.pop_back();
  transaction->commit();
}

void kvConnection::RollbackTrans() {
  if (transactions_.empty()) raise(kNotAllowed);
  transactions_.pop_back();
}

void kvConnection::StatementLog(const std::string& path) {
  log_.close();
  log_.clear();
  logPath_.clear();
  if (path.empty()) return;
  log_.open(pathOf(path), std::ios::binary | std::ios::app);
  if (!log_.is_open())
    throw Error(kEngineFailure, "kvData", "The statement log could not be opened. '" + path + "'");
  logPath_ = path;
}

void kvConnection::Interrupt() noexcept {
  for (Database* open = database_.get(); open != nullptr; open = open->other().get())
    if (open->isOpen()) open->engine().interrupt();
}

void kvConnection::TimeLimit(std::chrono::milliseconds limit) {
  database_->engine().setTimeLimit(limit);
  if (database_->other()) database_->other()->engine().setTimeLimit(limit);
}

}  // namespace kv
