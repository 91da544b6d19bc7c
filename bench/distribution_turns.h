// SPDX-License-Identifier: Apache-2.0
// Measuring what is done and undone in turn: the one is measured, the other belongs to neither
// side.
#pragma once

#include <benchmark/benchmark.h>

#include <cstdint>
#include <string>

#include "benches.h"
#include "distribution_register.h"

namespace kv::bench {

enum class Measured : std::uint8_t { First, Second };

// Does `first` and `second` in turn, for one number after another, and counts the round trips of
// the measured one. Both give what the next one needs.
template <Measured which, class Who, class First, class Second>
void measureTurns(benchmark::State& state, const Who& who, First first, Second second) {
  constexpr int kStep = 7919;  // so that none is near the one before
  int n = 0;
  std::uint64_t trips = 0;
  const auto counted = [&](auto operation) {
    const auto before = who.roundTrips();
    operation();
    trips += who.roundTrips() - before;
  };
  // What is prepared at the first times is no part of the others.
  for (int warm = 0; warm < 2; ++warm) {
    first(n += kStep);
    second(n);
  }
  for (auto _ : state) {
    n = (n + kStep) % kLarge;
    if constexpr (which == Measured::First) {
      counted([&] { first(n); });
      state.PauseTiming();
      second(n);
      state.ResumeTiming();
    } else {
      state.PauseTiming();
      first(n);
      state.ResumeTiming();
      counted([&] { second(n); });
    }
  }
  state.counters["trips"] = static_cast<double>(trips) / static_cast<double>(state.iterations());
}

// So often what goes through many copies.
inline constexpr int kFewTimes = 4;
inline constexpr int kSeveralTimes = 40;

// ---- for clients of either side, on either engine, that are made for a number of documents ----

[[nodiscard]] inline int sizeOf(const benchmark::State& state) {
  return static_cast<int>(state.range(0));
}

template <class Client, Measured which, std::size_t manual>
void documentInManual(benchmark::State& state) {
  Client client(sizeOf(state));
  const std::string id = heldManual(kManualHolders.at(manual));
  measureTurns<which>(
      state, client, [&](int n) { client.putInto(id, looseDocument(n, sizeOf(state))); },
      [&](int n) { client.takeOut(id, looseDocument(n, sizeOf(state))); });
}

template <class Client, Measured which, std::size_t manual>
void manualToUser(benchmark::State& state) {
  Client client(sizeOf(state));
  const std::string id = manualOf(kManualDocuments.at(manual));
  measureTurns<which>(
      state, client, [&](int) { client.giveManual(id); }, [&](int) { client.takeManual(id); });
}

template <class Client, Measured which>
void documentToUser(benchmark::State& state) {
  Client client(sizeOf(state));
  int release = 0;
  measureTurns<which>(
      state, client, [&](int n) { release = client.giveDocument(looseDocument(n, sizeOf(state))); },
      [&](int) { client.takeDocument(release); });
}

}  // namespace kv::bench
