// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

#include "engine/engine.h"

struct sqlite3;
struct sqlite3_stmt;

namespace kv::engine {

// What a statement tells its engine while it runs.
class SqliteWatch {
 public:
  SqliteWatch() = default;
  SqliteWatch(const SqliteWatch&) = delete;
  SqliteWatch& operator=(const SqliteWatch&) = delete;
  SqliteWatch(SqliteWatch&&) = delete;
  SqliteWatch& operator=(SqliteWatch&&) = delete;
  virtual ~SqliteWatch() = default;
  // Called before a statement's first step, and after it.
  virtual void starting() = 0;
  virtual void started() noexcept = 0;
};

class SqliteStatement final : public Statement {
 public:
  SqliteStatement(sqlite3* connection, SqliteWatch& watch, const std::string& sql);
  ~SqliteStatement() override;
  SqliteStatement(const SqliteStatement&) = delete;
  SqliteStatement& operator=(const SqliteStatement&) = delete;
  SqliteStatement(SqliteStatement&&) = delete;
  SqliteStatement& operator=(SqliteStatement&&) = delete;

  void bind(int parameter, const SqlValue& value) override;
  void bindCell(int parameter, const RowBlock& block, std::size_t row, std::size_t column) override;
  void bindKeys(int parameter, const KeyList& keys) override;
  std::int64_t run() override;
  std::size_t fetch(RowBlock& block, std::span<const ColumnType> types,
                    std::vector<std::int64_t>& keys, std::size_t keysPerRow,
                    std::size_t most) override;
  void fetchKeys(std::vector<std::int64_t>& keys, std::size_t keysPerRow) override;
  void reset() override;

 private:
  // One step; false at the end, when the statement is reset. Raises after resetting it.
  bool step();
  void readCell(RowBlock& block, ColumnType type, int column);
  std::int64_t readKey(int column);

  sqlite3* connection_;
  SqliteWatch& watch_;
  sqlite3_stmt* statement_ = nullptr;
  bool underWay_ = false;
};

}  // namespace kv::engine
