// SPDX-License-Identifier: Apache-2.0
// The floor on a server: hand-written calls of libpq with prepared statements, one at a time.
#pragma once

#include <libpq-fe.h>

#include <cstdint>
#include <initializer_list>
#include <memory>
#include <string>

namespace kv::bench {

// The tables' names and columns as the server has them.
[[nodiscard]] const std::string& serverDocumentColumns();
// The text key of a column, and the order of a list by one: what the indexes are made of.
[[nodiscard]] std::string serverFold(const std::string& column);
// The same of a column that is quoted already, or of one of a join's.
[[nodiscard]] std::string serverFoldOf(const std::string& quoted);
[[nodiscard]] std::string serverOrderOf(const std::string& quoted);
[[nodiscard]] std::string serverOrder(const std::string& column);

struct ClearAnswer {
  void operator()(PGresult* answer) const noexcept { PQclear(answer); }
};
using Answer = std::unique_ptr<PGresult, ClearAnswer>;

class ServerFloor {
 public:
  explicit ServerFloor(const std::string& location);
  ~ServerFloor();
  ServerFloor(const ServerFloor&) = delete;
  ServerFloor& operator=(const ServerFloor&) = delete;
  ServerFloor(ServerFloor&&) = delete;
  ServerFloor& operator=(ServerFloor&&) = delete;

  // A text of its own, which may be several statements.
  Answer run(const std::string& sql);
  void prepare(const char* name, const std::string& sql);
  Answer run(const char* name, std::initializer_list<std::string> values);
  // The first answer's first number.
  [[nodiscard]] std::int64_t number(const std::string& sql);
  [[nodiscard]] std::uint64_t roundTrips() const noexcept { return roundTrips_; }

 private:
  Answer checked(PGresult* answer);

  PGconn* connection_;
  std::uint64_t roundTrips_ = 0;
};

[[nodiscard]] std::string textOf(const Answer& answer, int row, int column);
[[nodiscard]] int numberOf(const Answer& answer, int row, int column);
// Reads rows as what they are.
[[nodiscard]] std::size_t readRow(const Answer& answer, int row);
[[nodiscard]] std::size_t readRows(const Answer& answer);

// Adding a document as the library does it: numbers from the counters, the revision under a level
// that only it has, found again by that, given its own values, then the document.
class FloorAddition {
 public:
  explicit FloorAddition(ServerFloor& db);
  void add(const std::string& user, int n);

 private:
  ServerFloor& db_;
};

// Reads a document's row, locked, and writes one column of it.
class FloorValue {
 public:
  explicit FloorValue(ServerFloor& db);
  void set(const std::string& id, const std::string& value);

 private:
  ServerFloor& db_;
};

// A new register on the server, filled with documents as sampleRegister's are.
[[nodiscard]] std::string serverRegister(int documents);

}  // namespace kv::bench
