// Runs the benchmarks and prints, for every pair of "name/kvvesk" and "name/floor", the ratio of
// their times, as a table in Markdown. Each is repeated, in random order among the others, and the
// medians are compared, so that a drifting machine harms both alike.

#include <benchmark/benchmark.h>
#include <fmt/format.h>

#include <algorithm>
#include <map>
#include <string>
#include <utility>
#include <vector>

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
      times_[key][name.substr(slash + 1)].push_back(seconds);
    }
  }

  void Finalize() override {
    constexpr const char* row = "| {:<38} | {:>9} | {:>10} | {:>10} | {:>5} |\n";
    fmt::print(fmt::runtime(row), "operation", "documents", "kvvesk", "floor", "ratio");
    fmt::print("|{:-<40}|{:->10}:|{:->11}:|{:->11}:|{:->6}:|\n", "", "", "", "", "");
    for (auto& [key, both] : times_) {
      const double ours = median(both["kvvesk"]);
      const double floor = median(both["floor"]);
      fmt::print(fmt::runtime(row), key.first, key.second > 0 ? std::to_string(key.second) : "",
                 shown(ours), shown(floor), fmt::format("{:.2f}", ours / floor));
    }
  }

 private:
  static double median(std::vector<double>& values) {
    if (values.empty()) return 0;
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
  }
  static std::string shown(double seconds) {
    if (seconds >= 1e-3) return fmt::format("{:.2f} ms", seconds * 1e3);
    return fmt::format("{:.2f} us", seconds * 1e6);
  }

  // Name and how many documents there are; runs come in random order, the table in this one.
  using Key = std::pair<std::string, long>;
  std::map<Key, std::map<std::string, std::vector<double>>> times_;
};

}  // namespace

int main(int argc, char** argv) {
  std::vector<char*> arguments(argv, argv + argc);
  std::string repeat = "--benchmark_repetitions=9";
  std::string interleave = "--benchmark_enable_random_interleaving=true";
  std::string shortRuns = "--benchmark_min_time=0.4";
  arguments.insert(arguments.begin() + 1, {repeat.data(), interleave.data(), shortRuns.data()});
  int count = static_cast<int>(arguments.size());
  benchmark::Initialize(&count, arguments.data());
  if (benchmark::ReportUnrecognizedArguments(count, arguments.data())) return 2;
  RatioReporter reporter;
  return benchmark::RunSpecifiedBenchmarks(&reporter) > 0 ? 0 : 1;
}
