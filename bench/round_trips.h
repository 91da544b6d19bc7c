// SPDX-License-Identifier: Apache-2.0
// Measuring on a server: times, and how often the server is waited for.
#pragma once

#include <benchmark/benchmark.h>

#include "benches.h"

namespace kv::bench {

// Runs an operation for one document after another and counts its round trips.
template <class Who, class Operation>
void measure(benchmark::State& state, const Who& who, Operation operation) {
  constexpr int kStep = 7919;  // so that none is near the one before
  int n = 0;
  const auto next = [&] {
    n = (n + kStep) % kSmall;
    operation(n);
  };
  // What is prepared at the first times is no part of the others.
  next();
  next();
  const auto before = who.roundTrips();
  for (auto _ : state) next();
  state.counters["trips"] =
      static_cast<double>(who.roundTrips() - before) / static_cast<double>(state.iterations());
}

}  // namespace kv::bench
