// SPDX-License-Identifier: Apache-2.0
// A register seen past the library, through the engine's own interface: what it really
// holds, on either engine, and rules that make single statements fail.
#pragma once

#include <fmt/format.h>
#include <gtest/gtest.h>
#include <sqlite3.h>

#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "support/test_server.h"

namespace kv::test {

class RawRegister {
 public:
  explicit RawRegister(const std::string& path) : path_(path) {
    if (onServer()) return;
    sqlite3* opened = nullptr;
    EXPECT_EQ(sqlite3_open(path.c_str(), &opened), SQLITE_OK) << path;
    database_.reset(opened);
    sqlite3_busy_timeout(opened, 10000);
  }

  // All rows, every value as the engine quotes it: type and bytes can be told apart.
  [[nodiscard]] std::vector<std::string> rows(const std::string& sql) const {
    sqlite3_stmt* prepared = nullptr;
    EXPECT_EQ(sqlite3_prepare_v2(database_.get(), sql.c_str(), -1, &prepared, nullptr), SQLITE_OK)
        << sqlite3_errmsg(database_.get()) << ": " << sql;
    const std::unique_ptr<sqlite3_stmt, int (*)(sqlite3_stmt*)> statement(prepared,
                                                                          sqlite3_finalize);
    std::vector<std::string> out;
    while (sqlite3_step(prepared) == SQLITE_ROW) {
      std::string row;
      for (int i = 0; i < sqlite3_column_count(prepared); ++i) {
        const auto* bytes = static_cast<const char*>(sqlite3_column_blob(prepared, i));
        const auto size = static_cast<std::size_t>(sqlite3_column_bytes(prepared, i));
        row += fmt::format("|{}:", sqlite3_column_type(prepared, i));
        if (bytes != nullptr) row.append(bytes, size);
      }
      out.push_back(std::move(row));
    }
    return out;
  }

  // Every row of every table, hidden keys too; counters where they go back with their transaction.
  [[nodiscard]] std::vector<std::string> dump() const {
    std::vector<std::string> out;
    if (onServer()) {
      for (const auto& table :
           lines("SELECT relname FROM pg_class WHERE relnamespace = 'public'::regnamespace AND "
                 "relkind = 'r' ORDER BY relname"))
        for (const auto& row : lines("SELECT t::text FROM \"" + table + "\" AS t ORDER BY 1"))
          out.push_back(table + row);
      return out;
    }
    for (const auto& found :
         rows("SELECT name FROM sqlite_master WHERE type = 'table' ORDER BY name")) {
      const std::string table = found.substr(found.find(':') + 1);
      for (auto& row : rows("SELECT rowid, * FROM \"" + table + "\" ORDER BY rowid"))
        out.push_back(table + std::move(row));
    }
    return out;
  }

  // From now on every such statement ("INSERT", "UPDATE", "DELETE") on a table's rows fails.
  void refuse(const std::string& action, const std::string& table) const {
    if (onServer())
      execute(
          "CREATE OR REPLACE FUNCTION refuse() RETURNS trigger LANGUAGE plpgsql AS $$ BEGIN RAISE "
          "EXCEPTION "
          "'no'; END $$; CREATE TRIGGER refuse BEFORE " +
          action + " ON \"" + table + "\" FOR EACH ROW EXECUTE FUNCTION refuse()");
    else
      execute("CREATE TRIGGER refuse BEFORE " + action + " ON \"" + table +
              "\" BEGIN SELECT RAISE(ABORT, 'no'); END");
  }
  void allowAgain(const std::string& table) const {
    execute(onServer() ? "DROP TRIGGER refuse ON \"" + table + "\"" : "DROP TRIGGER refuse");
  }

  // A statement in the engine's own words.
  void execute(const std::string& sql) const {
    if (onServer()) {
      TestServer::run(path_, sql);
      return;
    }
    EXPECT_EQ(sqlite3_exec(database_.get(), sql.c_str(), nullptr, nullptr, nullptr), SQLITE_OK)
        << sqlite3_errmsg(database_.get()) << ": " << sql;
  }

 private:
  [[nodiscard]] std::vector<std::string> lines(const std::string& sql) const {
    std::vector<std::string> out;
    std::istringstream in(TestServer::run(path_, sql));
    for (std::string line; std::getline(in, line);) out.push_back(line);
    return out;
  }

  struct Closer {
    void operator()(sqlite3* database) const noexcept { sqlite3_close(database); }
  };
  std::string path_;
  std::unique_ptr<sqlite3, Closer> database_;
};

}  // namespace kv::test
