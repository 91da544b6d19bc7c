// SPDX-License-Identifier: Apache-2.0
// Registers in which manuals are held, released and changed, on either engine, and what a client
// does in them.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>

#include "bench_session.h"

namespace kv::bench {

// A manual of one document that this many users hold: as many lines come and go with a document.
inline constexpr std::array<int, 3> kManualHolders = {0, 100, 10'000};
// A manual of this many documents that is released.
inline constexpr std::array<int, 2> kManualDocuments = {10, 1000};
[[nodiscard]] std::string heldManual(int holders);
[[nodiscard]] std::string manualOf(int documents);

// Holds a hundred copies of each kind, whatever the size of the register: three in five through a
// manual.
inline constexpr const char* kReader = "Reader";
// Has one document in five hundred on his list, each by itself.
inline constexpr const char* kOneInFiveHundred = "User2";

// Prepares a register of `documents` documents, once.
void prepareDistribution(const std::string& location, int documents);

// The DocumentID of a document that is in none of these manuals, one after another.
[[nodiscard]] std::string looseDocument(int n, int documents);

// What is listed of a user's copies.
enum class Holdings : std::uint8_t {
  Releases,           // on his list
  Personals,          // both kinds
  PersonalDocuments,  // both kinds
  HardCopies,
  VirtualCopies
};

// The copy number under which manuals are released.
inline constexpr const char* kCopyNumber = "7";

class DistributionClient {
 public:
  explicit DistributionClient(const std::string& location) : session_(location) {}

  void putInto(const std::string& manual, const std::string& document) const;
  void takeOut(const std::string& manual, const std::string& document) const;
  void giveManual(const std::string& manual) const;  // to the reader, as a hard copy
  void takeManual(const std::string& manual) const;
  // Gives the reader a hard copy and returns its number.
  [[nodiscard]] int giveDocument(const std::string& document) const;
  void takeDocument(int release) const;
  // Opens a list and reads all of it.
  [[nodiscard]] std::size_t list(Holdings what, const std::string& user) const;

  [[nodiscard]] std::uint64_t roundTrips() const { return session_.roundTrips(); }

 private:
  BenchSession session_;
};

}  // namespace kv::bench
