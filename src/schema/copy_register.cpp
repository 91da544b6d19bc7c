// SPDX-License-Identifier: Apache-2.0
#include "schema/copy_register.h"

#include <fmt/format.h>

#include <algorithm>
#include <bit>

#include "common/error.h"
#include "common/text.h"
#include "engine/row_block.h"
#include "jet/emit/rows.h"
#include "recordset/database.h"
#include "schema/create_register.h"
#include "schema/create_tables.h"
#include "schema/register_schema.h"

namespace kv {

namespace {

constexpr std::size_t kPage = 1000;    // rows read at a time
constexpr std::size_t kTogether = 50;  // rows written by one statement

// The stored columns of a table, without the key.
struct Columns {
  std::vector<int> places;
  std::vector<ColumnType> types;
};

Columns columnsOf(const TableInfo& table) {
  Columns out;
  for (std::size_t i = 0; i < table.columns.size(); ++i) {
    const auto& column = table.columns[i];
    if (!column.stands.empty() || column.counter) continue;
    out.places.push_back(static_cast<int>(i));
    out.types.push_back(column.type);
  }
  return out;
}

// A checksum of rows that depends on their order (FNV-1a over 64 bits).
class Checksum {
 public:
  void add(std::uint64_t value) noexcept {
    for (int i = 0; i < 8; ++i)
      byte(static_cast<unsigned char>(value >> (8U * static_cast<unsigned>(i))));
  }
  void add(std::string_view text) noexcept {
    add(text.size());
    for (const char c : text) byte(static_cast<unsigned char>(c));
  }
  void addRow(std::int64_t key, const engine::RowBlock& rows, std::size_t row) {
    add(static_cast<std::uint64_t>(key));
    for (std::size_t c = 0; c < rows.columns(); ++c) {
      const auto& cell = rows.cell(row, c);
      byte(static_cast<unsigned char>(cell.kind));
      switch (cell.kind) {
        case engine::Cell::Kind::Null: break;
        case engine::Cell::Kind::Whole:
        case engine::Cell::Kind::Date: add(static_cast<std::uint64_t>(cell.whole)); break;
        case engine::Cell::Kind::Real: add(std::bit_cast<std::uint64_t>(cell.real)); break;
        case engine::Cell::Kind::Text: add(rows.text(cell)); break;
      }
    }
  }
  [[nodiscard]] std::uint64_t value() const noexcept { return value_; }

 private:
  void byte(unsigned char b) noexcept { value_ = (value_ ^ b) * 1099511628211U; }
  std::uint64_t value_ = 14695981039346656037U;
};

// Reads a table in the order of its keys, page by page, and calls take(keys, rows) for each page.
template <class Take>
void eachPage(Database& database, const TableInfo& table, const Columns& columns, Take take) {
  const auto statement = database.engine().prepare(
      jet::emitPage(table, columns.places, static_cast<int>(kPage), database.dialect()));
  std::int64_t after = engine::kNoKey + 1;
  for (;;) {
    statement->bind(1, after);
    engine::RowBlock rows;
    rows.reset(columns.types.size());
    std::vector<std::int64_t> keys;
    const auto count = statement->fetch(rows, columns.types, keys, 1, kPage + 1);
    if (count > 0) take(keys, rows);
    if (count < kPage) return;
    after = keys.back();
  }
}

CopiedTable tableOf(Database& database, const TableInfo& table) {
  CopiedTable out{.name = table.name};
  Checksum checksum;
  eachPage(database, table, columnsOf(table),
           [&](const std::vector<std::int64_t>& keys, const engine::RowBlock& rows) {
             for (std::size_t r = 0; r < keys.size(); ++r) checksum.addRow(keys[r], rows, r);
             out.rows += static_cast<std::int64_t>(keys.size());
           });
  checksum.add(static_cast<std::uint64_t>(database.engine().counterReached(table)));
  out.checksum = checksum.value();
  return out;
}

// Writes rows of one table, several by one statement.
class RowWriter {
 public:
  RowWriter(Database& database, const TableInfo& table, Columns columns)
      : database_(database), table_(table), columns_(std::move(columns)) {}

  void write(const std::vector<std::int64_t>& keys, const engine::RowBlock& rows) {
    std::size_t row = 0;
    for (; row + kTogether <= keys.size(); row += kTogether) {
      if (!many_) many_ = prepare(kTogether);
      run(*many_, keys, rows, row, kTogether);
    }
    for (; row < keys.size(); ++row) {
      if (!one_) one_ = prepare(1);
      run(*one_, keys, rows, row, 1);
    }
  }

 private:
  [[nodiscard]] std::unique_ptr<engine::Statement> prepare(std::size_t rows) const {
    return database_.engine().prepare(
        jet::emitInsertWithKeys(table_, columns_.places, rows, database_.dialect()));
  }
  static void run(engine::Statement& statement, const std::vector<std::int64_t>& keys,
                  const engine::RowBlock& rows, std::size_t from, std::size_t count) {
    int number = 1;
    for (std::size_t row = from; row < from + count; ++row) {
      statement.bind(number++, keys[row]);
      for (std::size_t c = 0; c < rows.columns(); ++c) statement.bindCell(number++, rows, row, c);
    }
    (void)statement.run();
  }

  Database& database_;
  const TableInfo& table_;
  Columns columns_;
  std::unique_ptr<engine::Statement> many_;
  std::unique_ptr<engine::Statement> one_;
};

void takeCounterAlong(Database& from, const TableInfo& source, Database& to,
                      const TableInfo& target) {
  to.engine().countAbove(target);
  const auto ahead = from.engine().counterReached(source) - to.engine().counterReached(target);
  if (ahead > 0) (void)to.engine().reserveCounter(target, ahead);
}

// The tables as they are there, with the indexes that every register has. A table keeps the kind of
// key it has; the name of a hidden one is the engine's.
std::vector<TableInfo> tablesToMake(const Database& from) {
  std::vector<TableInfo> out;
  for (const auto& table : from.catalog()->tables()) {
    TableInfo made = table;
    std::erase_if(made.columns, [](const ColumnInfo& c) { return !c.stands.empty(); });
    if (made.hiddenKey) made.key = "kv_key";
    for (const auto& known : registerTables())
      if (equalNoCase(known.name, made.name)) made.indexes = known.indexes;
    out.push_back(std::move(made));
  }
  return out;
}

}  // namespace

std::vector<CopiedTable> tablesOf(const Ref<kvConnection>& connection) {
  Database& database = *connection->database();
  const Transaction reading(database, engine::Access::Read);
  std::vector<CopiedTable> out;
  for (const auto& table : database.catalog()->tables()) out.push_back(tableOf(database, table));
  return out;
}

namespace {

// Copies tables that both have, telling how far it has come.
class Copying {
 public:
  Copying(Database& source, std::vector<TableInfo> tables, const CopyProgress& progress)
      : source_(source), tables_(std::move(tables)), progress_(progress) {
    for (const auto& table : tables_) {
      copied_.push_back(tableOf(source_, *source_.catalog()->find(table.name)));
      all_ += copied_.back().rows;
    }
  }

  void into(Database& target) {
    for (std::size_t t = 0; t < tables_.size(); ++t) {
      const TableInfo& made = tables_[t];
      const TableInfo& old = *source_.catalog()->find(made.name);
      RowWriter writer(target, made, columnsOf(made));
      eachPage(source_, old, columnsOf(old),
               [&](const std::vector<std::int64_t>& keys, const engine::RowBlock& rows) {
                 writer.write(keys, rows);
                 done_ += static_cast<std::int64_t>(keys.size());
                 if (progress_) progress_(done_, all_, old.name);
               });
      takeCounterAlong(source_, old, target, made);
      const CopiedTable after = tableOf(target, made);
      if (after.rows != copied_[t].rows || after.checksum != copied_[t].checksum)
        throw Error(kEngineFailure, "kvData",
                    fmt::format("The copy of {} differs from the original: {} and {} rows.",
                                old.name, copied_[t].rows, after.rows));
    }
  }
  [[nodiscard]] const std::vector<TableInfo>& tables() const noexcept { return tables_; }
  [[nodiscard]] const std::vector<CopiedTable>& copied() const noexcept { return copied_; }

 private:
  Database& source_;
  std::vector<TableInfo> tables_;
  const CopyProgress& progress_;
  std::vector<CopiedTable> copied_;
  std::int64_t all_ = 0;
  std::int64_t done_ = 0;
};

}  // namespace

std::vector<CopiedTable> copyRegister(const Ref<kvConnection>& from, const std::string& to,
                                      const CopyProgress& progress) {
  Database& source = *from->database();
  const Transaction reading(source, engine::Access::Read);
  Copying copying(source, tablesToMake(source), progress);
  createWithTables(to, copying.tables(), [&](const std::shared_ptr<Database>& target) {
    copying.into(*target);
  })->Close();
  return copying.copied();
}

std::vector<CopiedTable> copyUsers(const Ref<kvConnection>& from, const std::string& to,
                                   const CopyProgress& progress) {
  const auto keeper = from->database()->other();
  Database& source = keeper ? *keeper : *from->database();
  const Transaction reading(source, engine::Access::Read);
  auto tables = tablesToMake(source);
  std::erase_if(tables, [](const TableInfo& table) {
    return std::find(userTables().begin(), userTables().end(), table.name) == userTables().end();
  });
  Copying copying(source, std::move(tables), progress);
  createUserDatabase(to, copying.tables(), [&](const std::shared_ptr<Database>& target) {
    copying.into(*target);
  })->Close();
  return copying.copied();
}

}  // namespace kv
