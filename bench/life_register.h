// SPDX-License-Identifier: Apache-2.0
// Registers in which revisions are routed, decided about and put in force, on either engine, and
// what a client does in them.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>

#include "bench_session.h"

namespace kv::bench {

// How many users hold the documents that are put in force.
inline constexpr std::array<int, 3> kHolders = {1, 10, 1000};
// Whose password costs what real ones cost; Anna's costs next to nothing.
inline constexpr const char* kRealUser = "Hugo";

// Prepares a register with `documents` documents, each with one revision: a thousand users, three
// approvers for every document, who decide in order, holders of the documents 0 to 2 as kHolders
// says, and a second revision of each of these. Everybody is told everything.
void prepareLife(const std::string& location, int documents);
// Makes every revision await approval by its first approver; or one that has never been routed. A
// register is for one of the two: what has to be undone is then little.
void awaitApprovals(const std::string& location);
void unroute(const std::string& location);

// The number of the revision of document `n`, and of the second one where there is one.
[[nodiscard]] constexpr int revisionOf(int n) { return n + 1; }
[[nodiscard]] constexpr int secondRevisionOf(int n, int documents) { return documents + n + 1; }

class LifeClient {
 public:
  // With `whole` each step is one transaction of the client's. Otherwise the operation is one, and
  // the saving of the revision's row after it another.
  LifeClient(const std::string& location, bool whole) : session_(location), whole_(whole) {}

  void route(int revision);
  void approve(int revision);  // for its first approver
  void putInForce(int revision);

  [[nodiscard]] std::uint64_t roundTrips() const { return session_.roundTrips(); }

 private:
  template <class Step>
  void step(int revision, Step step);

  BenchSession session_;
  bool whole_;
};

}  // namespace kv::bench
