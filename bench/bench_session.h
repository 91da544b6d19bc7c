// SPDX-License-Identifier: Apache-2.0
// A session on a register, as a client has one: the root object with an administrator logged in.
#pragma once

#include <cstdint>
#include <string>

#include "classes/session/vesk.h"
#include "data/connection.h"

namespace kv::bench {

// Adds the administrator that BenchSession logs in.
void addAdministrator(kvConnection& connection);

class BenchSession {
 public:
  explicit BenchSession(const std::string& location);
  ~BenchSession();
  BenchSession(const BenchSession&) = delete;
  BenchSession& operator=(const BenchSession&) = delete;
  BenchSession(BenchSession&&) = delete;
  BenchSession& operator=(BenchSession&&) = delete;

  [[nodiscard]] clsVeskDocument& documents() const { return *vesk_->Document(); }
  [[nodiscard]] clsVesk& vesk() const { return *vesk_; }
  // How often this session has waited for its server.
  [[nodiscard]] std::uint64_t roundTrips() const;

 private:
  Ref<clsVesk> vesk_;
};

// What documents are found by in the saved query: controlled ones with this in their title.
inline constexpr const char* kTitlePart = "line 17";
// Makes the saved query, or one without criteria, and returns its number.
[[nodiscard]] std::int32_t addQuery(const BenchSession& session, bool withCriteria);

// Fields of a document as the operations give and take them.
struct DocumentFields {
  std::string title, number, revisionLevel, effectiveDate, user1, user2, user3, user4, notes;
  bool secured = false;
  std::string location;
  bool controlled = false;
  std::int32_t currentRevision = 0;

  [[nodiscard]] std::size_t size() const {
    return title.size() + number.size() + revisionLevel.size() + effectiveDate.size() +
           user1.size() + user2.size() + user3.size() + user4.size() + notes.size() +
           location.size() + static_cast<std::size_t>(currentRevision);
  }
};
void load(const BenchSession& session, const std::string& id, DocumentFields& fields);
// Adds a document with its first revision for a user.
void addDocument(const BenchSession& session, const std::string& user, int n);

// Opens the set of a saved query and reads its first row, or all of them.
[[nodiscard]] std::size_t readFirst(const BenchSession& session, std::int32_t query);
[[nodiscard]] std::size_t readToEnd(Recordset& rs);

}  // namespace kv::bench
