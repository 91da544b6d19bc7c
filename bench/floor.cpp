// SPDX-License-Identifier: Apache-2.0
#include "floor.h"

#include <unistd.h>

#include <stdexcept>

#include "engine/sqlite/sqlite_engine.h"

namespace kv::bench {

int processNumber() { return static_cast<int>(getpid()); }

FloorDatabase::FloorDatabase(const std::string& path) {
  if (sqlite3_open_v2(path.c_str(), &db_, SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX, nullptr) !=
      SQLITE_OK)
    throw std::runtime_error("cannot open " + path);
  engine::registerSqliteFunctions(db_);
  // The settings that the library uses by default.
  run("PRAGMA cache_size = -32768");
  run("PRAGMA mmap_size = 268435456");
  run("PRAGMA temp_store = MEMORY");
  run("PRAGMA synchronous = FULL");
}

FloorDatabase::~FloorDatabase() { sqlite3_close(db_); }

void FloorDatabase::run(const char* sql) {
  if (sqlite3_exec(db_, sql, nullptr, nullptr, nullptr) != SQLITE_OK)
    throw std::runtime_error(sqlite3_errmsg(db_));
}

FloorStatement::FloorStatement(FloorDatabase& db, const std::string& sql) : db_(db.get()) {
  if (sqlite3_prepare_v3(db_, sql.c_str(), -1, SQLITE_PREPARE_PERSISTENT, &statement_, nullptr) !=
      SQLITE_OK)
    throw std::runtime_error(sqlite3_errmsg(db_));
}

FloorStatement::~FloorStatement() { sqlite3_finalize(statement_); }

void FloorStatement::bind(int parameter, const std::string& text) {
  sqlite3_bind_text(statement_, parameter, text.data(), static_cast<int>(text.size()),
                    SQLITE_TRANSIENT);
}

void FloorStatement::bind(int parameter, int number) {
  sqlite3_bind_int(statement_, parameter, number);
}

bool FloorStatement::step() {
  const int code = sqlite3_step(statement_);
  if (code != SQLITE_ROW && code != SQLITE_DONE) throw std::runtime_error(sqlite3_errmsg(db_));
  return code == SQLITE_ROW;
}

std::string_view FloorStatement::text(int column) const {
  const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(statement_, column));
  return {text, static_cast<std::size_t>(sqlite3_column_bytes(statement_, column))};
}

std::size_t FloorStatement::readRow() const {
  std::size_t sum = 0;
  const int columns = sqlite3_column_count(statement_);
  for (int i = 0; i < columns; ++i) switch (sqlite3_column_type(statement_, i)) {
      case SQLITE_NULL: break;
      case SQLITE_INTEGER:
        sum += static_cast<std::size_t>(sqlite3_column_int(statement_, i));
        break;
      default: sum += text(i).size(); break;
    }
  return sum;
}

}  // namespace kv::bench
