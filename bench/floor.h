// SPDX-License-Identifier: Apache-2.0
// The floor: hand-written calls of SQLite's own interface with prepared statements that are kept.
// What the library does is compared with this, on the same file in the same run.
#pragma once

#include <sqlite3.h>

#include <string>
#include <string_view>

namespace kv::bench {

[[nodiscard]] int processNumber();

// What `Select * From Documents` reads.
inline constexpr const char* kDocumentColumns =
    "ID, DocumentID, DocumentTitle, DocumentNumber, RevisionLevel, EffectiveDate, DocUser1, "
    "DocUser2, DocUser3, DocUser4, DocumentNotes, SecurityLevel, Location, Controlled, "
    "CurrentRevID";

class FloorDatabase {
 public:
  explicit FloorDatabase(const std::string& path);
  ~FloorDatabase();
  FloorDatabase(const FloorDatabase&) = delete;
  FloorDatabase& operator=(const FloorDatabase&) = delete;
  FloorDatabase(FloorDatabase&&) = delete;
  FloorDatabase& operator=(FloorDatabase&&) = delete;

  void run(const char* sql);
  [[nodiscard]] sqlite3* get() const { return db_; }

 private:
  sqlite3* db_ = nullptr;
};

class FloorStatement {
 public:
  FloorStatement(FloorDatabase& db, const std::string& sql);
  ~FloorStatement();
  FloorStatement(const FloorStatement&) = delete;
  FloorStatement& operator=(const FloorStatement&) = delete;
  FloorStatement(FloorStatement&&) = delete;
  FloorStatement& operator=(FloorStatement&&) = delete;

  void bind(int parameter, const std::string& text);
  void bind(int parameter, int number);
  bool step();
  void reset() { sqlite3_reset(statement_); }
  void run() {
    while (step()) {
    }
    reset();
  }
  [[nodiscard]] std::string_view text(int column) const;
  [[nodiscard]] int number(int column) const { return sqlite3_column_int(statement_, column); }
  [[nodiscard]] sqlite3_stmt* get() const { return statement_; }
  // Reads every column as what it is and adds up what there is, so that nothing can be left out.
  [[nodiscard]] std::size_t readRow() const;

 private:
  sqlite3* db_;
  sqlite3_stmt* statement_ = nullptr;
};

}  // namespace kv::bench
