// SPDX-License-Identifier: Apache-2.0
// The benchmarks, each a pair: the library's way and the floor.
#pragma once

#include <benchmark/benchmark.h>

#include <string>
#include <vector>

namespace kv::bench {

// Numbers of documents.
inline constexpr int kSmall = 10'000;
inline constexpr int kMedium = 100'000;
inline constexpr int kLarge = 1'000'000;

struct Pair {
  std::string name;
  void (*kvvesk)(benchmark::State&);
  void (*floor)(benchmark::State&);
  // How often a repetition does it; 0 for as often as it takes to measure. For what takes long to
  // undo, which the benchmark library does not see.
  int times = 0;
  // Short at any size, and repeated as often among a million documents.
  bool brief = false;
};

// For every number of documents, or once when there are none; the largest less often.
void registerPair(const Pair& pair, const std::vector<int>& documents);

// `large` measures at a million documents, too.
void registerRecordSets(bool large);
void registerDocuments(bool large);
// The life of revisions, and logging in; at ten thousand documents.
void registerRevisions();
// Distribution, and what users hold.
void registerDistribution(bool large);
// On the server that KVVESK_TEST_SERVER names.
void registerServer();
void registerServerRevisions();
void registerServerDistribution();

// Prints what an open set over a million documents takes.
void measureMemory();
// Prints how much many clients of the server write at once, and compares what was kept with what
// was done. False when something is missing.
[[nodiscard]] bool measureClients();

}  // namespace kv::bench
