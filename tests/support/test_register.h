// SPDX-License-Identifier: Apache-2.0
// Registers for tests.
#pragma once

#include <ostream>
#include <string>
#include <vector>

#include "classes/session/vesk.h"
#include "data/connection.h"
#include "recordset/database.h"
#include "support/temp_folder.h"
#include "user/password.h"

namespace kv {
// How googletest shows a Variant in a failure.
void PrintTo(const Variant& value, std::ostream* out);
}  // namespace kv

namespace kv::test {

// What passwords cost in tests: as little as the algorithm allows.
inline constexpr PasswordCost kCheapPasswords{.memoryKiB = 8, .passes = 1};

// A new register with the tables and first values of every register, and nothing else; its file
// goes with it.
class TestRegister {
 public:
  // A file, or where the tests are run on a server a database there; path() says where.
  TestRegister();
  ~TestRegister();
  TestRegister(const TestRegister&) = delete;
  TestRegister& operator=(const TestRegister&) = delete;
  TestRegister(TestRegister&&) = delete;
  TestRegister& operator=(TestRegister&&) = delete;

  [[nodiscard]] const std::string& path() const { return path_; }
  [[nodiscard]] const TempFolder& folder() const { return folder_; }
  // The connection the helpers below use; tests open others as they need them.
  [[nodiscard]] const Ref<kvConnection>& connection() const { return connection_; }
  [[nodiscard]] Ref<kvConnection> openAnother(const std::string& settings = {}) const;

  std::int32_t execute(const std::string& sql) const;
  [[nodiscard]] Ref<Recordset> open(const std::string& sql,
                                    std::int32_t lockType = kOptimistic) const;
  // All rows as text, fields separated by |, Null as ~.
  [[nodiscard]] std::vector<std::string> rows(const std::string& sql) const;
  // The one value of a statement that gives one, as text.
  [[nodiscard]] std::string value(const std::string& sql) const;

  // A user with a password (empty for none) and a profile row.
  void addUser(int number, const std::string& name, const std::string& password,
               bool administrator = false, const std::string& rights = {}) const;

 private:
  TempFolder folder_;
  std::string path_;
  Ref<kvConnection> connection_;
};

// The rows of a set from its first one on, as TestRegister::rows writes them; leaves it at Eof.
[[nodiscard]] std::vector<std::string> rowsOf(Recordset& rs);
// One row, the current one.
[[nodiscard]] std::string rowOf(Recordset& rs);
[[nodiscard]] std::string shown(const Variant& value);

// A root object that closes its session at the end of its scope.
class TestSession {
 public:
  TestSession() : vesk_(clsVesk::create(kCheapPasswords)) {}
  ~TestSession();
  TestSession(const TestSession&) = delete;
  TestSession& operator=(const TestSession&) = delete;
  TestSession(TestSession&&) = delete;
  TestSession& operator=(TestSession&&) = delete;

  clsVesk* operator->() const { return vesk_.get(); }
  clsVesk& operator*() const { return *vesk_; }

 private:
  Ref<clsVesk> vesk_;
};

}  // namespace kv::test
