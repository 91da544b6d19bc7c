// A register seen past the library, through the engine's own interface: what its file really holds,
// and statements that the library would not let through.
#pragma once

#include <fmt/format.h>
#include <gtest/gtest.h>
#include <sqlite3.h>

#include <memory>
#include <string>
#include <vector>

namespace kv::test {

class RawRegister {
 public:
  explicit RawRegister(const std::string& path) {
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

  // Every row of every table, hidden keys and counters too.
  [[nodiscard]] std::vector<std::string> dump() const {
    std::vector<std::string> out;
    for (const auto& found :
         rows("SELECT name FROM sqlite_master WHERE type = 'table' ORDER BY name")) {
      const std::string table = found.substr(found.find(':') + 1);
      for (auto& row : rows("SELECT rowid, * FROM \"" + table + "\" ORDER BY rowid"))
        out.push_back(table + std::move(row));
    }
    return out;
  }

  void execute(const std::string& sql) const {
    EXPECT_EQ(sqlite3_exec(database_.get(), sql.c_str(), nullptr, nullptr, nullptr), SQLITE_OK)
        << sqlite3_errmsg(database_.get()) << ": " << sql;
  }

 private:
  struct Closer {
    void operator()(sqlite3* database) const noexcept { sqlite3_close(database); }
  };
  std::unique_ptr<sqlite3, Closer> database_;
};

}  // namespace kv::test
