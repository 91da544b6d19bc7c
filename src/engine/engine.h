// SPDX-License-Identifier: Apache-2.0
// The interface to a database engine: what the engines we have need, and no more. SQL texts pass
// through it as they are; which engine understands which text is the emitters' business.
//
// An engine and its statements belong to one thread; only interrupt() may be called from another
// one or from a signal handler. Every failure is raised as an Error with the number and text that
// clients know; engines map their own codes in one place.
#pragma once

#include <chrono>
#include <cstdint>
#include <limits>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "common/catalog.h"
#include "common/error.h"
#include "common/sql_value.h"
#include "engine/row_block.h"

namespace kv::engine {

// Stands for the missing row of an outer join in a list of keys.
inline constexpr std::int64_t kNoKey = std::numeric_limits<std::int64_t>::min();

// Said at once where waiting for a lock could not help.
inline constexpr std::string_view kLockedByItself =
    "The register is locked by another session of the same thread, which cannot go on before this "
    "call has ended.";

// A statement was not run, because the tables are no longer what catalog() said of them.
class TablesChanged final : public Error {
 public:
  TablesChanged(std::int32_t number, std::string description)
      : Error(number, "kvData", std::move(description), {}, Cause::TablesChanged) {}
};

// Keys of rows, `perRow` numbers each.
struct KeyList {
  std::span<const std::int64_t> keys;
  std::size_t perRow = 1;
};

class Statement {
 public:
  Statement() = default;
  Statement(const Statement&) = delete;
  Statement& operator=(const Statement&) = delete;
  Statement(Statement&&) = delete;
  Statement& operator=(Statement&&) = delete;
  virtual ~Statement() = default;

  // Parameters count from 1 and keep their value until bound again. The statement must not be under
  // way.
  virtual void bind(int parameter, const SqlValue& value) = 0;
  // Binds a value as it was read.
  virtual void bindCell(int parameter, const RowBlock& block, std::size_t row,
                        std::size_t column) = 0;
  // The list must live until the statement has ended.
  virtual void bindKeys(int parameter, const KeyList& keys) = 0;

  // Runs a statement that gives no rows to its end; returns how many rows it changed.
  virtual std::int64_t run() = 0;
  // Appends up to `most` further rows to `block`: one cell per type, and the following `keysPerRow`
  // columns to `keys`, Null as kNoKey. Returns how many; fewer than `most` means that the statement
  // has ended and may be run again.
  virtual std::size_t fetch(RowBlock& block, std::span<const ColumnType> types,
                            std::vector<std::int64_t>& keys, std::size_t keysPerRow,
                            std::size_t most) = 0;
  // As fetch for rows that consist of keys alone, to the end of the statement.
  virtual void fetchKeys(std::vector<std::int64_t>& keys, std::size_t keysPerRow) = 0;
  // Ends a statement that is under way.
  virtual void reset() = 0;
};

enum class Access : std::uint8_t { Read, Write };

class Engine {
 public:
  Engine() = default;
  Engine(const Engine&) = delete;
  Engine& operator=(const Engine&) = delete;
  Engine(Engine&&) = delete;
  Engine& operator=(Engine&&) = delete;
  virtual ~Engine() = default;

  // Which SQL it understands, by the name of the emitters' dialect for it.
  [[nodiscard]] virtual std::string_view dialect() const = 0;

  [[nodiscard]] virtual std::unique_ptr<Statement> prepare(const std::string& sql) = 0;
  // Runs one statement without parameters and rows.
  virtual void execute(const std::string& sql) = 0;

  // The tables as they are now.
  [[nodiscard]] virtual std::vector<TableInfo> catalog() = 0;

  // While it is on, a statement that meets tables which another connection has changed raises
  // TablesChanged, and has done nothing, as far as the engine is told of it without asking.
  virtual void watchTables(bool on) noexcept = 0;
  // Whether a statement may raise that now: not where a failure would end a transaction.
  [[nodiscard]] virtual bool watchesTables() const noexcept = 0;
  // Whether a change has been met since catalog() was last called, while nobody watched.
  [[nodiscard]] virtual bool metChangedTables() const noexcept = 0;
  // False where the engine can say that the tables are what catalog() last said.
  [[nodiscard]] virtual bool tablesMayDiffer() = 0;

  // One transaction at a time; Write takes the write lock at once, waiting for it up to the
  // time-out.
  virtual void begin(Access access) = 0;
  virtual void commit() = 0;
  // Never raises; ends the transaction whatever state it is in.
  virtual void rollback() noexcept = 0;
  // Whether a transaction is open; some failures end it.
  [[nodiscard]] virtual bool inTransaction() const = 0;
  // Marks within a transaction, numbered by the caller; rollbackTo keeps the mark, release forgets
  // it.
  virtual void savepoint(int mark) = 0;
  virtual void release(int mark) = 0;
  virtual void rollbackTo(int mark) = 0;

  // Takes `count` numbers of a table's counter, or of its hidden key, for the caller alone and
  // returns the first. Inside a transaction it is undone with it.
  [[nodiscard]] virtual std::int64_t reserveCounter(const TableInfo& table, std::int64_t count) = 0;

  // The last number that reserveCounter or a row has taken; 0 for none.
  [[nodiscard]] virtual std::int64_t counterReached(const TableInfo& table) = 0;
  // Rows were added with numbers of their own: the counter goes on above the highest.
  virtual void countAbove(const TableInfo& table) = 0;
  // While it is on, a statement that fails in a transaction leaves the transaction as it was before
  // that statement. Off, such a failure may end the transaction or the mark it stands in.
  virtual void guardStatements(bool on) = 0;

  // A number that changes when another connection has changed the data.
  [[nodiscard]] virtual std::int64_t dataVersion() = 0;

  // Marks the database as a register; within the transaction that makes its tables, so that half a
  // register is none.
  virtual void markAsRegister() = 0;

  // True where nothing can be written: a file or folder without write permission, a server standing
  // by.
  [[nodiscard]] virtual bool readOnly() const = 0;

  // How often this connection has waited for an answer of a server; 0 where there is none.
  [[nodiscard]] virtual std::uint64_t roundTrips() const noexcept = 0;

  // Makes the running statement fail soon. Safe from another thread and from a signal handler.
  virtual void interrupt() noexcept = 0;
  // How long one statement may run; zero is as long as it likes.
  virtual void setTimeLimit(std::chrono::milliseconds limit) = 0;
};

}  // namespace kv::engine
