// SPDX-License-Identifier: Apache-2.0
#include "engine/sqlite/sqlite_statement.h"

#include <fmt/format.h>
#include <sqlite3.h>

#include "common/error.h"
#include "engine/sqlite/sqlite_error.h"

namespace kv::engine {

SqliteStatement::SqliteStatement(sqlite3* connection, SqliteWatch& watch, const std::string& sql)
    : connection_(connection), watch_(watch) {
  const int code = sqlite3_prepare_v3(connection_, sql.c_str(), static_cast<int>(sql.size()) + 1,
                                      SQLITE_PREPARE_PERSISTENT, &statement_, nullptr);
  if (code != SQLITE_OK) raiseSqlite(connection_, code);
}

SqliteStatement::~SqliteStatement() { sqlite3_finalize(statement_); }

void SqliteStatement::bind(int parameter, const SqlValue& value) {
  int code = SQLITE_OK;
  if (const auto* whole = std::get_if<std::int64_t>(&value)) {
    code = sqlite3_bind_int64(statement_, parameter, *whole);
  } else if (const auto* real = std::get_if<double>(&value)) {
    code = sqlite3_bind_double(statement_, parameter, *real);
  } else if (const auto* text = std::get_if<std::string>(&value)) {
    code = sqlite3_bind_text64(statement_, parameter, text->data(), text->size(), SQLITE_TRANSIENT,
                               SQLITE_UTF8);
  } else if (const auto* date = std::get_if<Date>(&value)) {
    const std::string iso = isoText(*date);
    code = sqlite3_bind_text64(statement_, parameter, iso.data(), iso.size(), SQLITE_TRANSIENT,
                               SQLITE_UTF8);
  } else {
    code = sqlite3_bind_null(statement_, parameter);
  }
  if (code != SQLITE_OK) raiseSqlite(connection_, code);
}

void SqliteStatement::bindCell(int parameter, const RowBlock& block, std::size_t row,
                               std::size_t column) {
  const Cell& cell = block.cell(row, column);
  int code = SQLITE_OK;
  switch (cell.kind) {
    case Cell::Kind::Null: code = sqlite3_bind_null(statement_, parameter); break;
    case Cell::Kind::Whole: code = sqlite3_bind_int64(statement_, parameter, cell.whole); break;
    case Cell::Kind::Real: code = sqlite3_bind_double(statement_, parameter, cell.real); break;
    case Cell::Kind::Text: {
      const auto text = block.text(cell);
      code = sqlite3_bind_text64(statement_, parameter, text.data(), text.size(), SQLITE_TRANSIENT,
                                 SQLITE_UTF8);
      break;
    }
    case Cell::Kind::Date: bind(parameter, Date::fromMilliseconds(cell.whole)); return;
  }
  if (code != SQLITE_OK) raiseSqlite(connection_, code);
}

void SqliteStatement::bindKeys(int parameter, const KeyList& keys) {
  // The pointer travels through SQLite as one to a non-const list; kv_keys only reads it.
  const int code =
      sqlite3_bind_pointer(statement_, parameter, const_cast<KeyList*>(&keys), "kv_keys", nullptr);
  if (code != SQLITE_OK) raiseSqlite(connection_, code);
}

bool SqliteStatement::step() {
  const bool first = !underWay_;
  if (first) watch_.starting();
  underWay_ = true;
  const int code = sqlite3_step(statement_);
  if (first) watch_.started();
  if (code == SQLITE_ROW) return true;
  if (code == SQLITE_DONE) {
    reset();
    return false;
  }
  try {
    raiseSqlite(connection_, code);
  } catch (...) {
    reset();
    throw;
  }
}

std::int64_t SqliteStatement::run() {
  const std::int64_t before = sqlite3_total_changes64(connection_);
  while (step()) {
  }
  // total_changes counts only what the statement itself changed: registers have no triggers and no
  // foreign keys.
  return sqlite3_total_changes64(connection_) - before;
}

// The value is asked for once and then read without the checks that only threads need: an engine
// belongs to one.
void SqliteStatement::readCell(RowBlock& block, ColumnType type, int column) {
  auto* value = sqlite3_column_value(statement_, column);
  if (sqlite3_value_type(value) == SQLITE_NULL) {
    block.addNull();
    return;
  }
  const auto text = [&] {
    const auto* bytes = reinterpret_cast<const char*>(sqlite3_value_text(value));
    return std::string_view(bytes, static_cast<std::size_t>(sqlite3_value_bytes(value)));
  };
  switch (type) {
    case ColumnType::Text:
    case ColumnType::Memo: block.addText(text()); return;
    case ColumnType::Boolean:
    case ColumnType::Int16:
    case ColumnType::Int32: block.addWhole(sqlite3_value_int64(value)); return;
    case ColumnType::Single:
    case ColumnType::Double: block.addReal(sqlite3_value_double(value)); return;
    case ColumnType::Date: {
      const auto date = parseIso(text());
      if (!date) raise(kMismatch, fmt::format("The register holds '{}' as a date.", text()));
      block.addDate(*date);
      return;
    }
  }
}

std::int64_t SqliteStatement::readKey(int column) {
  if (sqlite3_column_type(statement_, column) == SQLITE_NULL) return kNoKey;
  return sqlite3_column_int64(statement_, column);
}

std::size_t SqliteStatement::fetch(RowBlock& block, std::span<const ColumnType> types,
                                   std::vector<std::int64_t>& keys, std::size_t keysPerRow,
                                   std::size_t most) {
  std::size_t rows = 0;
  while (rows < most && step()) {
    int column = 0;
    try {
      for (const ColumnType type : types) readCell(block, type, column++);
    } catch (...) {  // a value that cannot be read ends the statement
      reset();
      throw;
    }
    block.endRow();
    for (std::size_t k = 0; k < keysPerRow; ++k) keys.push_back(readKey(column++));
    ++rows;
  }
  return rows;
}

void SqliteStatement::fetchKeys(std::vector<std::int64_t>& keys, std::size_t keysPerRow) {
  const int count = static_cast<int>(keysPerRow);
  while (step())
    for (int k = 0; k < count; ++k) keys.push_back(readKey(k));
}

void SqliteStatement::reset() {
  // A failed step reports its error again here; it has been raised already.
  if (underWay_) (void)sqlite3_reset(statement_);
  underWay_ = false;
}

}  // namespace kv::engine
