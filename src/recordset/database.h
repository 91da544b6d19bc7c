// SPDX-License-Identifier: Apache-2.0
// A database that speaks the dialect: an engine with the SQL front end before it. Statements of one
// shape are lexed, found again and run; only a new shape is parsed, bound, emitted and prepared.
#pragma once

#include <cstdint>
#include <functional>
#include <list>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "engine/engine.h"
#include "jet/binding/bound.h"
#include "jet/emit/dialect.h"
#include "jet/emit/emitted.h"
#include "jet/syntax/lexer.h"

namespace kv {

struct SourceColumn;
class Transaction;

// How rows of one table of a set are written, for one choice of columns; see KeysetSource.
struct UpdatePlan {
  std::size_t named = 0;  // which of the set's named tables
  std::vector<int> set;   // the columns written, by place in the table
  struct Check {
    std::size_t column;  // of the set
    int stored;  // the stored column behind a second name; -1 where the column is stored itself
  };
  std::vector<Check> check;  // what must still be as it was read
  std::unique_ptr<engine::Statement> statement;
};

// What all statements of one shape share. The engine's statements are prepared when first used.
struct StatementShape {
  std::shared_ptr<const Catalog> catalog;
  jet::BoundStatement bound;
  jet::Emitted emitted;
  std::vector<ColumnType> types;  // of the outputs
  std::shared_ptr<const std::vector<SourceColumn>>
      columns;  // the same for record sets; made when first used
  std::unique_ptr<engine::Statement> whole;
  std::unique_ptr<engine::Statement> keys;
  std::unique_ptr<engine::Statement> head;
  std::unique_ptr<engine::Statement> rows;
  std::vector<UpdatePlan> updates;
  // A set of this shape had more than the head gives; the next one is read by keys from the start.
  bool large = false;
  bool elsewhere = false;  // names tables of the partner; nothing of the above is filled then
};

class Database;

// One statement: a shape and the literals of this text.
struct PreparedStatement {
  std::shared_ptr<StatementShape> shape;
  std::vector<jet::Literal> literals;
  std::string text;
  std::shared_ptr<Database> home;  // the partner that runs it; nothing where it was prepared

  [[nodiscard]] bool isSelect() const noexcept {
    return shape->bound.statement.kind == jet::StatementKind::Select;
  }
};

class Database {
 public:
  // Reads the catalog of an engine's database anew, second names included.
  using CatalogReader = std::function<Catalog(engine::Engine&)>;

  // `catalog` describes the tables of `engine`'s database, second names of columns included.
  Database(std::unique_ptr<engine::Engine> engine, std::shared_ptr<const Catalog> catalog);
  ~Database();
  Database(const Database&) = delete;
  Database& operator=(const Database&) = delete;
  Database(Database&&) = delete;
  Database& operator=(Database&&) = delete;

  // Raises what the front end raises for text that is no statement of this database.
  [[nodiscard]] PreparedStatement prepare(std::string_view text);

  // Lets `other` keep the tables named in `there`. A statement that names only such tables runs in
  // `other`, one that names none of them in `main`, whichever of the two it is given to; one that
  // names both kinds is refused. `each` is a table that each has for itself. What is written to
  // `other` while transactions are open in `main` belongs to them; `main` commits first. Closing
  // `main` closes both.
  static void link(const std::shared_ptr<Database>& main, const std::shared_ptr<Database>& other,
                   const std::vector<std::string>& there, const std::string& each);
  // The database that keeps a table: a partner, or nothing for this one.
  [[nodiscard]] std::shared_ptr<Database> keeperOf(std::string_view table) const;
  // The database that this one has been linked to as the main one; nothing without.
  [[nodiscard]] const std::shared_ptr<Database>& other() const noexcept { return other_; }
  // Before anything is locked or written here: opens transactions to go with those that are open in
  // the main database. Nothing to do where there is none.
  void joinTransactions();

  // Runs an INSERT, UPDATE or DELETE; returns how many rows it changed.
  std::int64_t execute(const PreparedStatement& statement);
  // As above for a text in hand; a SELECT is checked and not run, and gives 0.
  std::int64_t execute(std::string_view text);

  // The shape's engine statement for `text`, one of its emitted texts kept in `slot`, with the
  // literals bound.
  engine::Statement& ready(const PreparedStatement& statement,
                           std::unique_ptr<engine::Statement>& slot, const jet::SqlText& text);
  // A statement of the emitter's row forms, kept by its text.
  engine::Statement& rowStatement(const std::string& sql);

  // Adds rows, given by their values in these columns; the table numbers them in their order. By as
  // few statements as there can be; in a transaction of the caller's, who wants all of them or
  // none.
  void insertRows(const TableInfo& table, std::span<const int> columns,
                  std::span<const std::vector<SqlValue>> rows);

  // The next number of a table's counter, for the caller alone.
  [[nodiscard]] std::int64_t nextNumber(const TableInfo& table);

  // Runs something that prepares a statement of the dialect and starts it. When that fails because
  // another connection has made, changed or dropped tables, the catalog is read anew, and it runs
  // once more. It must have done nothing before it fails.
  template <class Run>
  auto withPresentTables(Run run) {
    const TablesWatch watch(*this);
    try {
      return run();
    } catch (const Error& error) {
      if (!takeOnPresentTables(error)) throw;
    }
    return run();
  }
  // By which that is read; without it the catalog stays as it is.
  void readCatalogBy(CatalogReader reader) { reader_ = std::move(reader); }
  // Whether a transaction that writes is open.
  [[nodiscard]] bool isWriting() const noexcept;

  // Takes on another catalog after the tables have changed; every statement is bound anew.
  void renew(std::shared_ptr<const Catalog> catalog);
  // Ends the connection. Record sets may live on; what needs the database then raises 3709.
  void close() noexcept;
  [[nodiscard]] bool isOpen() const noexcept { return engine_ != nullptr; }
  // Raises 3709 when closed.
  [[nodiscard]] engine::Engine& engine();
  [[nodiscard]] const jet::Dialect& dialect() const noexcept { return *dialect_; }
  [[nodiscard]] const std::shared_ptr<const Catalog>& catalog() const noexcept { return catalog_; }

  // Changes whenever this connection has written something or has undone something: rows read
  // before may be stale. When it closes it is kClosedStamp, and stays so.
  [[nodiscard]] const std::uint64_t& stamp() const noexcept { return stamp_; }
  void wrote() noexcept {
    if (engine_) ++stamp_;
  }
  // For those who keep in mind what they have written: runs `undo` when a transaction that is open
  // now is rolled back, and forgets it when all are committed.
  void whenUndone(std::function<void()> undo);

 private:
  friend class Transaction;

  static constexpr std::size_t kMostShapes = 256;
  static constexpr std::size_t kMostRowStatements = 128;

  // Most recently used in front.
  struct Entry {
    std::string key;
    std::shared_ptr<StatementShape> shape;
  };
  struct RowEntry {
    std::string sql;
    std::unique_ptr<engine::Statement> statement;
  };

  // While there is one, statements say that tables have changed instead of running. What was met
  // before is taken on first.
  class TablesWatch {
   public:
    explicit TablesWatch(Database& database);
    ~TablesWatch();
    TablesWatch(const TablesWatch&) = delete;
    TablesWatch& operator=(const TablesWatch&) = delete;
    TablesWatch(TablesWatch&&) = delete;
    TablesWatch& operator=(TablesWatch&&) = delete;

   private:
    Database& database_;
    std::shared_ptr<Database> partner_;
  };
  void watchTables(bool on) noexcept;
  // Whether the failure may be one of a catalog that was not true any more, and is now.
  bool takeOnPresentTables(const Error& error);
  // False when the catalog is what the tables are. `told`: it is known that they have changed.
  bool rereadTables(bool told);
  [[nodiscard]] std::shared_ptr<Database> partner() const noexcept {
    return other_ ? other_ : main_.lock();
  }

  static void forgetStatements(StatementShape& shape) noexcept;
  void forgetStatements() noexcept;
  std::shared_ptr<StatementShape> makeShape(std::string_view text, const jet::Lexed& lexed);

  std::unique_ptr<engine::Engine> engine_;
  std::shared_ptr<const Catalog> catalog_;
  CatalogReader reader_;
  const jet::Dialect* dialect_;
  std::uint64_t stamp_ = 1;
  jet::Lexed lexed_;  // reused from call to call
  std::list<Entry> shapes_;
  std::unordered_map<std::string_view, std::list<Entry>::iterator> byKey_;
  std::list<RowEntry> rowStatements_;
  std::unordered_map<std::string_view, std::list<RowEntry>::iterator> byRowSql_;
  struct Level {
    engine::Access access;
    bool client;  // begun by a client, who may go on after a statement in it has failed
  };
  void guardStatements() noexcept;
  // Raises -2147217900 for a statement that names tables of both.
  [[nodiscard]] bool runsElsewhere(const jet::Statement& statement) const;
  // Rows were given numbers of their own: the counters follow before they are next used by anybody.
  void settleCounters();

  // Of what was written in the levels from this one on, the last first.
  void undoFrom(int level) noexcept;
  // What a level has kept belongs to the one around it, and to nobody when there is none.
  void handUndosOn(int level) noexcept;
  struct Undo {
    int level;
    std::function<void()> run;
  };
  std::vector<Undo> undos_;

  std::vector<std::string> numbered_;  // tables whose counters have to follow
  // Open transactions, outermost first.
  std::vector<Level> levels_;
  int opener_ = -1;  // the level that opened the engine's transaction; -1 when none is open

  std::shared_ptr<Database> other_;  // of a main database
  std::weak_ptr<Database> main_;     // of another
  std::vector<std::string> apart_;   // the tables that the other one answers for
  bool joining_ = false;
  // Of a main database: the other one's transactions, beside the outermost of levels_.
  std::vector<std::unique_ptr<Transaction>> joined_;
};

// A transaction, or within one a mark to go back to. What is not committed is undone.
//
// Read shares one snapshot among the reads below it, and costs nothing inside another transaction.
// Write takes the write lock before anything is tested. A Write below a Read ends the Read's
// snapshot first: a snapshot that somebody has written behind could not be written from, however
// long one waited.
// In a transaction of a client's a statement that fails has done nothing, and the transaction goes
// on. In others a failure ends it, or the mark it stands in.
class Transaction {
 public:
  enum class For : std::uint8_t { Library, Client };

  Transaction(Database& database, engine::Access access, For whom = For::Library);
  ~Transaction();
  Transaction(const Transaction&) = delete;
  Transaction& operator=(const Transaction&) = delete;
  Transaction(Transaction&&) = delete;
  Transaction& operator=(Transaction&&) = delete;

  // Keeps what was done. Raises when the engine could not, in which case nothing is kept.
  void commit();

 private:
  void leave() noexcept;
  // What goes with this one in the other database, taken out.
  [[nodiscard]] std::unique_ptr<Transaction> joined() noexcept;

  Database& database_;
  int level_ = 0;
  bool opened_ = false;  // this one opened the engine's transaction
  bool marked_ = false;  // this one set a savepoint
  bool done_ = false;
};

}  // namespace kv
