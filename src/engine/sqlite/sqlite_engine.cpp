// SPDX-License-Identifier: Apache-2.0
#include "engine/sqlite/sqlite_engine.h"

#include <fmt/format.h>
#include <sqlite3.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <map>
#include <thread>
#include <utility>

#include "common/error.h"
#include "common/text.h"
#include "engine/sqlite/sqlite_error.h"
#include "engine/sqlite/sqlite_file.h"
#include "engine/sqlite/sqlite_locks.h"
#include "engine/sqlite/sqlite_statement.h"

namespace kv::engine {

namespace {

struct CloseConnection {
  void operator()(sqlite3* connection) const { sqlite3_close_v2(connection); }
};
using Connection = std::unique_ptr<sqlite3, CloseConnection>;

Connection connect(const std::string& location, int flags) {
  sqlite3* raw = nullptr;
  const int code = sqlite3_open_v2(location.c_str(), &raw, flags | SQLITE_OPEN_NOMUTEX, nullptr);
  Connection connection(raw);
  if (code != SQLITE_OK) raiseSqlite(raw, code);
  sqlite3_extended_result_codes(raw, 1);
  return connection;
}

// A path as a file: URI with the characters that mean something in one written as codes.
std::string fileUri(const std::string& path, std::string_view query) {
  std::string out = "file:";
  for (const char c : path) {
    const auto byte = static_cast<unsigned char>(c);
    if (std::isalnum(byte) != 0 || std::string_view("/._-").find(c) != std::string_view::npos)
      out += c;
    else
      out += fmt::format("%{:02X}", byte);
  }
  return out + "?" + std::string(query);
}

ColumnType typeOf(std::string_view declared) {
  const std::string type = asciiLowered(declared);
  if (type.starts_with("boolean")) return ColumnType::Boolean;
  if (type.starts_with("smallint")) return ColumnType::Int16;
  if (type.starts_with("int")) return ColumnType::Int32;
  if (type.starts_with("real")) return ColumnType::Single;
  if (type.starts_with("double")) return ColumnType::Double;
  if (type.starts_with("datetime")) return ColumnType::Date;
  if (type.starts_with("varchar")) return ColumnType::Text;
  return ColumnType::Memo;
}

int sizeOf(std::string_view declared) {
  const auto open = declared.find('(');
  int size = 0;
  for (std::size_t i = open + 1; open != std::string_view::npos && i < declared.size(); ++i)
    if (isDigit(declared[i])) size = size * 10 + (declared[i] - '0');
  return size;
}

// A DEFAULT clause's text as the plain value.
std::string initialOf(std::string_view text) {
  if (text.size() < 2 || text.front() != '\'') return std::string(text);
  std::string out;
  for (std::size_t i = 1; i + 1 < text.size(); ++i) {
    out += text[i];
    if (text[i] == '\'') ++i;
  }
  return out;
}

class SqliteEngine final : public Engine, public SqliteWatch {
 public:
  explicit SqliteEngine(OpenOptions options) : options_(std::move(options)) { connectFile(); }

  ~SqliteEngine() override { writeLockGiven(db_.get()); }
  SqliteEngine(const SqliteEngine&) = delete;
  SqliteEngine& operator=(const SqliteEngine&) = delete;
  SqliteEngine(SqliteEngine&&) = delete;
  SqliteEngine& operator=(SqliteEngine&&) = delete;

  std::string_view dialect() const override { return "sqlite"; }

  std::unique_ptr<Statement> prepare(const std::string& sql) override {
    return std::make_unique<SqliteStatement>(db_.get(), *this, sql);
  }

  void execute(const std::string& sql) override { SqliteStatement(db_.get(), *this, sql).run(); }

  std::vector<TableInfo> catalog() override {
    tablesVersion_ = schemaVersion();
    std::vector<TableInfo> out;
    std::vector<std::int64_t> noKeys;
    const auto tables = prepare(
        "SELECT name FROM sqlite_schema WHERE type = 'table' AND name NOT LIKE 'sqlite\\_%' ESCAPE "
        "'\\' ORDER BY rowid");
    const std::array<ColumnType, 1> oneText = {ColumnType::Text};
    RowBlock names;
    names.reset(1);
    tables->fetch(names, oneText, noKeys, 0, kAll);
    const auto columns =
        prepare("SELECT name, type, dflt_value, pk FROM pragma_table_info(?1) ORDER BY cid");
    const std::array<ColumnType, 4> types = {ColumnType::Text, ColumnType::Text, ColumnType::Text,
                                             ColumnType::Int32};
    for (std::size_t t = 0; t < names.rows(); ++t) {
      TableInfo table{.name = std::string(names.text(names.cell(t, 0))),
                      .columns = {},
                      .key = "rowid",
                      .hiddenKey = true};
      columns->bind(1, table.name);
      RowBlock rows;
      rows.reset(types.size());
      columns->fetch(rows, types, noKeys, 0, kAll);
      for (std::size_t r = 0; r < rows.rows(); ++r) {
        const std::string name(rows.text(rows.cell(r, 0)));
        const std::string declared(rows.text(rows.cell(r, 1)));
        const bool key = rows.cell(r, 3).whole != 0 && typeOf(declared) == ColumnType::Int32;
        if (key) {
          table.key = name;
          table.hiddenKey = name.starts_with("kv_");
          if (table.hiddenKey) continue;
        }
        ColumnInfo column{
            .name = name, .type = typeOf(declared), .size = sizeOf(declared), .counter = key};
        if (rows.cell(r, 2).kind == Cell::Kind::Text)
          column.initial = initialOf(rows.text(rows.cell(r, 2)));
        table.columns.push_back(std::move(column));
      }
      out.push_back(std::move(table));
    }
    metChange_ = false;  // reading them may have met it as well
    return out;
  }

  void watchTables(bool on) noexcept override { watching_ = on; }
  bool watchesTables() const noexcept override { return watching_; }
  bool metChangedTables() const noexcept override { return metChange_; }
  bool tablesMayDiffer() override { return schemaVersion() != tablesVersion_; }

  void begin(Access access) override {
    kept(access == Access::Write ? "BEGIN IMMEDIATE" : "BEGIN").run();
    if (access == Access::Write) writeLockTaken(db_.get());
  }
  void commit() override {
    kept("COMMIT").run();
    writeLockGiven(db_.get());
    // Whoever opens a file looks for the mark in the file itself, not in its log.
    if (std::exchange(marked_, false)) execute("PRAGMA wal_checkpoint(PASSIVE)");
  }
  void rollback() noexcept override {
    if (inTransaction()) sqlite3_exec(db_.get(), "ROLLBACK", nullptr, nullptr, nullptr);
    writeLockGiven(db_.get());
  }
  bool inTransaction() const override { return sqlite3_get_autocommit(db_.get()) == 0; }
  void savepoint(int mark) override { kept(fmt::format("SAVEPOINT kv_{}", mark)).run(); }
  void release(int mark) override { kept(fmt::format("RELEASE kv_{}", mark)).run(); }
  void rollbackTo(int mark) override { execute(fmt::format("ROLLBACK TO kv_{}", mark)); }

  std::int64_t reserveCounter(const TableInfo& table, std::int64_t count) override {
    // AUTOINCREMENT keeps its counters in a table that may be written like any other.
    auto& take = kept("UPDATE sqlite_sequence SET seq = seq + ?2 WHERE name = ?1 RETURNING seq");
    take.bind(1, table.name);
    take.bind(2, count);
    std::vector<std::int64_t> last;
    take.fetchKeys(last, 1);
    if (last.empty()) {
      const auto add = prepare("INSERT INTO sqlite_sequence (name, seq) VALUES (?1, ?2)");
      add->bind(1, table.name);
      add->bind(2, count);
      add->run();
      return 1;
    }
    return last[0] - count + 1;
  }

  std::int64_t counterReached(const TableInfo& table) override {
    const auto ask = prepare("SELECT seq FROM sqlite_sequence WHERE name = ?1");
    ask->bind(1, table.name);
    std::vector<std::int64_t> reached;
    ask->fetchKeys(reached, 1);
    return reached.empty() ? 0 : reached[0];
  }

  // AUTOINCREMENT looks at the highest number itself, and a failed statement never ends more than
  // itself.
  void countAbove(const TableInfo&) override {}
  void guardStatements(bool) override {}

  std::int64_t dataVersion() override {
    const auto ask = prepare("SELECT data_version FROM pragma_data_version");
    std::vector<std::int64_t> version;
    ask->fetchKeys(version, 1);
    return version.empty() ? 0 : version[0];
  }

  void markAsRegister() override {
    execute(fmt::format("PRAGMA application_id = {}", kRegisterMark));
    marked_ = true;
  }

  bool readOnly() const override { return access_ != FileAccess::ReadWrite; }

  std::uint64_t roundTrips() const noexcept override { return 0; }

  void interrupt() noexcept override { sqlite3_interrupt(db_.get()); }

  void setTimeLimit(std::chrono::milliseconds limit) override {
    limit_ = limit;
    constexpr int kInstructions = 2000;  // between two looks at the clock
    sqlite3_progress_handler(
        db_.get(), limit.count() > 0 ? kInstructions : 0,
        [](void* self) {
          return std::chrono::steady_clock::now() > static_cast<SqliteEngine*>(self)->deadline_ ? 1
                                                                                                : 0;
        },
        this);
  }

 private:
  static constexpr std::size_t kAll = static_cast<std::size_t>(-1);
  static constexpr std::size_t kMostKept = 32;  // marks nest as deep as clients like

  // A statement that many operations run, prepared once.
  SqliteStatement& kept(const std::string& sql) {
    const auto known = kept_.find(sql);
    if (known != kept_.end()) return *known->second;
    if (kept_.size() >= kMostKept) kept_.clear();
    return *kept_.emplace(sql, std::make_unique<SqliteStatement>(db_.get(), *this, sql))
                .first->second;
  }

  void starting() override {
    requireUnchanged();
    if (limit_.count() > 0) deadline_ = std::chrono::steady_clock::now() + limit_;
    starting_ = true;
  }
  void started() noexcept override { starting_ = false; }

  // Asked again and again while somebody else has the file locked: whether to go on trying.
  static int waitForLock(void* self, int tried) {
    auto& engine = *static_cast<SqliteEngine*>(self);
    const auto now = std::chrono::steady_clock::now();
    if (tried == 0) {
      if (ownThreadHoldsLock(engine.db_.get())) return 0;
      engine.waitingSince_ = now;
    }
    const auto left = engine.options_.lockTimeout - (now - engine.waitingSince_);
    if (left <= std::chrono::milliseconds(0)) return 0;
    // Short waits first: most locks are held for a moment.
    constexpr std::array<int, 7> kPauses = {1, 2, 5, 10, 15, 25, 50};
    const auto pause = std::chrono::milliseconds(
        kPauses[std::min(static_cast<std::size_t>(tried), kPauses.size() - 1)]);
    std::this_thread::sleep_for(std::min<std::chrono::nanoseconds>(pause, left));
    return 1;
  }

  // Changes with the tables.
  std::int64_t schemaVersion() {
    std::vector<std::int64_t> version;
    kept("PRAGMA schema_version").fetchKeys(version, 1);
    return version.empty() ? 0 : version[0];
  }

  // SQLite compares the file's tables with those that a statement was prepared for whenever one
  // starts, and prepares it again by itself when they differ. That is when it asks for permission
  // in the middle of a start; refused, the statement has not been run.
  static int permit(void* self, int action, const char*, const char*, const char*,
                    const char*) noexcept {
    auto& engine = *static_cast<SqliteEngine*>(self);
    // Transactions, and what functions of SQLite's own ask on the way, are about no table.
    const bool ofTables = action == SQLITE_SELECT || action == SQLITE_READ ||
                          action == SQLITE_INSERT || action == SQLITE_UPDATE ||
                          action == SQLITE_DELETE;
    if (!engine.starting_ || !ofTables) return SQLITE_OK;
    engine.metChange_ = true;
    return engine.watching_ ? SQLITE_DENY : SQLITE_OK;
  }

  void connectFile() {
    const std::string& path = options_.location;
    int flags = SQLITE_OPEN_READWRITE;
    std::string location = path;
    if (options_.create) {
      requireNothing(path);
      flags |= SQLITE_OPEN_CREATE;
    } else {
      requireFile(path);
      access_ = accessTo(path);
      if (access_ != FileAccess::ReadWrite) flags = SQLITE_OPEN_READONLY;
      if (access_ == FileAccess::Unchanging) {
        location = fileUri(path, "immutable=1");
        flags |= SQLITE_OPEN_URI;
        mark_ = fileMark(path);
      }
    }
    // A leading "./" keeps SQLite from giving names such as ":memory:" a meaning of their own.
    if (location == path && path.front() == ':') location = "./" + path;
    db_ = connect(location, flags);
    if (!options_.create) requireRegister(db_.get(), path);
    sqlite3_busy_handler(db_.get(), waitForLock, this);
    registerSqliteFunctions(db_.get());
    sqlite3_set_authorizer(db_.get(), permit, this);
    for (const auto& pragma :
         {fmt::format("PRAGMA cache_size = -{}", options_.cacheMiB * 1024),
          fmt::format("PRAGMA mmap_size = {}", options_.memoryMapMiB * 1024LL * 1024LL),
          std::string("PRAGMA temp_store = MEMORY"),
          // A commit is on the disk when it returns.
          std::string("PRAGMA synchronous = FULL")})
      execute(pragma);
    if (options_.create) execute("PRAGMA journal_mode = WAL");
    if (options_.pageLimit > 0)
      execute(fmt::format("PRAGMA max_page_count = {}", options_.pageLimit));
  }

  // Without locks nothing tells that somebody with more rights has written the file, and what is
  // read then could be a mixture. So the file is looked at before every statement, and refused when
  // it is not what it was.
  void requireUnchanged() const {
    if (access_ != FileAccess::Unchanging || fileMark(options_.location) == mark_) return;
    raise(Cause::ChangedMeanwhile,
          "The register was changed by another process while it was open in a folder that "
          "cannot be written. Open it again.",
          {});
  }

  OpenOptions options_;
  FileAccess access_ = FileAccess::ReadWrite;
  std::string mark_;
  bool marked_ = false;              // in the transaction that is open
  std::int64_t tablesVersion_ = -1;  // when catalog() was last called
  bool watching_ = false;
  bool starting_ = false;  // a statement is being started
  bool metChange_ = false;
  Connection db_;
  std::map<std::string, std::unique_ptr<SqliteStatement>> kept_;  // gone before the connection is
  std::chrono::milliseconds limit_{0};
  std::chrono::steady_clock::time_point deadline_;
  std::chrono::steady_clock::time_point waitingSince_;
};

}  // namespace

void discardSqlite(const OpenOptions& options) noexcept { removeFiles(options.location); }

std::unique_ptr<Engine> openSqlite(const OpenOptions& options) {
  return std::make_unique<SqliteEngine>(options);
}

}  // namespace kv::engine
