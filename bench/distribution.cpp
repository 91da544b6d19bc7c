// SPDX-License-Identifier: Apache-2.0
// Distribution against the floor: documents in manuals, copies given and taken back, and the lists
// of what a user holds.
#include <fmt/format.h>

#include "benches.h"
#include "distribution_turns.h"
#include "floor_distribution.h"
#include "sample_register.h"

namespace kv::bench {

namespace {

// Among a million documents what other benchmarks add makes no difference.
const std::string& registerOf(int documents) {
  const std::string& path =
      documents < kLarge ? sampleRegister(documents, "distribution") : sampleRegister(documents);
  prepareDistribution(path, documents);
  return path;
}

struct Ours : DistributionClient {
  explicit Ours(int documents) : DistributionClient(registerOf(documents)) {}
};
struct Floor : FloorDistribution {
  explicit Floor(int documents) : FloorDistribution(registerOf(documents)) {}
};
// The floor with the library's steps.
struct FloorInSteps : Floor {
  using Floor::Floor;
  [[nodiscard]] int giveDocument(const std::string& document) {
    return giveDocumentInSteps(document);
  }
};

constexpr const char* userOf(bool many) { return many ? kOneInFiveHundred : kReader; }

template <Holdings what, bool many>
void holdings(benchmark::State& state) {
  const Ours client(sizeOf(state));
  for (auto _ : state) benchmark::DoNotOptimize(client.list(what, userOf(many)));
}

template <Holdings what, bool many>
void holdingsFloor(benchmark::State& state) {
  FloorHoldings floor(registerOf(sizeOf(state)), what);
  for (auto _ : state) benchmark::DoNotOptimize(floor.list(userOf(many)));
}

template <Holdings what, bool many>
Pair listed(const char* name) {
  return {std::string(name) + (many ? ", 1 in 500 documents" : ""), holdings<what, many>,
          holdingsFloor<what, many>};
}

template <Measured which, std::size_t manual>
Pair inManual() {
  return {fmt::format("{} a manual, {} holders", which == Measured::First ? "into" : "out of",
                      kManualHolders.at(manual)),
          documentInManual<Ours, which, manual>, documentInManual<Floor, which, manual>,
          kManualHolders.at(manual) > 1000 ? kFewTimes : 0};
}

template <Measured which, std::size_t manual>
Pair ofManual() {
  return {fmt::format("{} a manual of {}", which == Measured::First ? "release" : "collect",
                      kManualDocuments.at(manual)),
          manualToUser<Ours, which, manual>, manualToUser<Floor, which, manual>,
          kManualDocuments.at(manual) > 100 ? kSeveralTimes : 0};
}

}  // namespace

void registerDistribution(bool large) {
  constexpr auto kFirst = Measured::First;
  constexpr auto kSecond = Measured::Second;
  Pair pairs[] = {
      inManual<kFirst, 0>(),
      inManual<kFirst, 1>(),
      inManual<kFirst, 2>(),
      inManual<kSecond, 0>(),
      inManual<kSecond, 1>(),
      inManual<kSecond, 2>(),
      ofManual<kFirst, 0>(),
      ofManual<kFirst, 1>(),
      ofManual<kSecond, 0>(),
      ofManual<kSecond, 1>(),
      {"release a document", documentToUser<Ours, kFirst>, documentToUser<FloorInSteps, kFirst>},
      {"release a document, to one INSERT", documentToUser<Ours, kFirst>,
       documentToUser<Floor, kFirst>},
      {"collect a document", documentToUser<Ours, kSecond>, documentToUser<Floor, kSecond>},
      listed<Holdings::Releases, false>("Releases"),
      listed<Holdings::Releases, true>("Releases"),
      listed<Holdings::Personals, false>("Personals"),
      listed<Holdings::Personals, true>("Personals"),
      listed<Holdings::PersonalDocuments, false>("PersonalDocuments"),
      listed<Holdings::PersonalDocuments, true>("PersonalDocuments"),
      listed<Holdings::HardCopies, false>("HardCopies"),
      listed<Holdings::VirtualCopies, false>("VirtualCopies"),
      listed<Holdings::VirtualCopies, true>("VirtualCopies"),
  };
  for (auto& pair : pairs) {
    pair.brief = true;
    registerPair(pair, large ? std::vector<int>{kSmall, kLarge} : std::vector<int>{kSmall});
  }
}

}  // namespace kv::bench
