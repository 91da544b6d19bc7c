// SPDX-License-Identifier: Apache-2.0
// Runs the benchmarks and prints, for every pair of "name/kvvesk" and "name/floor", the ratio of
// their times, as a table in Markdown. Each is repeated, in random order among the others, and the
// medians are compared, so that a drifting machine harms both alike.
//
// --large measures at a million documents too, --server on the server that KVVESK_TEST_SERVER
// names, in place of files; other arguments go to the benchmark library.

#include <benchmark/benchmark.h>
#include <fmt/format.h>

#include <algorithm>
#include <cstdio>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "benches.h"

namespace kv::bench {

namespace {

class RatioReporter : public benchmark::BenchmarkReporter {
 public:
  bool ReportContext(const Context&) override { return true; }

  void ReportRuns(const std::vector<Run>& runs) override {
    for (const auto& run : runs) {
      if (run.run_type != Run::RT_Iteration || run.error_occurred) continue;
      const std::string name = run.run_name.function_name;
      const auto slash = name.rfind('/');
      const auto& size = run.run_name.args;
      const Key key{name.substr(0, slash), size.empty() ? 0 : std::stol(size)};
      const double seconds = run.real_accumulated_time / static_cast<double>(run.iterations);
      auto& side = measured_[key][name.substr(slash + 1)];
      side.seconds.push_back(seconds);
      const auto trips = run.counters.find("trips");
      if (trips != run.counters.end()) side.roundTrips = trips->second;
    }
  }

  void Finalize() override {
    if (measured_.empty()) return;
    const bool server = std::any_of(measured_.begin(), measured_.end(), [](auto& entry) {
      return entry.second["kvvesk"].roundTrips > 0;
    });
    fmt::print("| {:<36} | {:>9} | {:>10} | {:>10} | {:>5} |{}\n", "operation", "documents",
               "kvvesk", "floor", "ratio", server ? " round trips | floor's |" : "");
    fmt::print("|{:-<38}|{:->10}:|{:->11}:|{:->11}:|{:->6}:|{}\n", "", "", "", "", "",
               server ? "------------:|--------:|" : "");
    for (auto& [key, both] : measured_) {
      const double ours = median(both["kvvesk"].seconds);
      const double floor = median(both["floor"].seconds);
      fmt::print("| {:<36} | {:>9} | {:>10} | {:>10} | {:>5.2f} |", key.first,
                 key.second > 0 ? std::to_string(key.second) : "", shown(ours), shown(floor),
                 ours / floor);
      if (server)
        fmt::print(" {:>11.3g} | {:>7.3g} |", both["kvvesk"].roundTrips, both["floor"].roundTrips);
      fmt::print("\n");
    }
    showGrowth();
  }

 private:
  struct Side {
    std::vector<double> seconds;
    double roundTrips = 0;
  };

  // How many times as long everything takes at the largest number of documents as at the smallest.
  void showGrowth() {
    std::map<std::string, std::vector<long>> sizes;
    for (const auto& [key, both] : measured_) sizes[key.first].push_back(key.second);
    bool any = false;
    for (const auto& [name, of] : sizes) {
      if (of.size() < 2) continue;
      if (!std::exchange(any, true))
        fmt::print("\n| {:<36} | {:<18} | {:>6} | {:>6} |\n|{:-<38}|{:-<20}|{:->7}:|{:->7}:|\n",
                   "growth", "documents", "kvvesk", "floor", "", "", "", "");
      const auto times = [&](const char* who) {
        return median(measured_[{name, of.back()}][who].seconds) /
               median(measured_[{name, of.front()}][who].seconds);
      };
      fmt::print("| {:<36} | {:<18} | {:>6.2f} | {:>6.2f} |\n", name,
                 fmt::format("{} to {}", of.front(), of.back()), times("kvvesk"), times("floor"));
    }
  }

  static double median(std::vector<double>& values) {
    if (values.empty()) return 0;
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
  }
  static std::string shown(double seconds) {
    if (seconds >= 1) return fmt::format("{:.2f} s", seconds);
    if (seconds >= 1e-3) return fmt::format("{:.2f} ms", seconds * 1e3);
    return fmt::format("{:.2f} us", seconds * 1e6);
  }

  // Name and how many documents there are; runs come in random order, the table in this one.
  using Key = std::pair<std::string, long>;
  std::map<Key, std::map<std::string, Side>> measured_;
};

bool take(std::vector<char*>& arguments, const std::string& flag) {
  const auto found = std::find(arguments.begin(), arguments.end(), flag);
  if (found == arguments.end()) return false;
  arguments.erase(found);
  return true;
}

int run(int argc, char** argv) {
  std::vector<char*> arguments(argv, argv + argc);
  std::string repeat = "--benchmark_repetitions=9";
  std::string interleave = "--benchmark_enable_random_interleaving=true";
  std::string shortRuns = "--benchmark_min_time=0.2";
  arguments.insert(arguments.begin() + 1, {repeat.data(), interleave.data(), shortRuns.data()});
  const bool large = take(arguments, "--large");
  const bool server = take(arguments, "--server");
  int count = static_cast<int>(arguments.size());
  benchmark::Initialize(&count, arguments.data());
  if (benchmark::ReportUnrecognizedArguments(count, arguments.data())) return 2;
  if (server) {
    registerServer();
  } else {
    registerRecordSets(large);
    registerDocuments(large);
    registerRevisions();
    registerDistribution(large);
  }
  // Before anything else has left memory behind that could be used again.
  if (large) measureMemory();
  RatioReporter reporter;
  if (benchmark::RunSpecifiedBenchmarks(&reporter) == 0) return 1;
  fmt::print("\n");
  std::fflush(stdout);
  if (server) return measureClients() ? 0 : 1;
  return 0;
}

}  // namespace

void registerPair(const Pair& pair, const std::vector<int>& documents) {
  const auto add = [&](const char* who, void (*measure)(benchmark::State&), int size) {
    auto* one = benchmark::RegisterBenchmark((pair.name + "/" + who).c_str(), measure);
    if (size > 0) one->Arg(size);
    constexpr int kFewer = 3;
    if (size >= kLarge && !pair.brief) one->Repetitions(kFewer);
    if (pair.times > 0) one->Iterations(pair.times);
  };
  for (const int size : documents.empty() ? std::vector<int>{0} : documents) {
    add("kvvesk", pair.kvvesk, size);
    add("floor", pair.floor, size);
  }
}

}  // namespace kv::bench

int main(int argc, char** argv) {
  try {
    return kv::bench::run(argc, argv);
  } catch (const std::exception& problem) {
    fmt::print(stderr, "bench: {}\n", problem.what());
    return 1;
  }
}
