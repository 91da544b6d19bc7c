// Runs the benchmarks and prints, for every pair of "name/kvvesk" and "name/floor", the ratio of
// their times. Each is repeated, in random order among the others, and the medians are compared, so
// that a drifting machine harms both alike.

#include <benchmark/benchmark.h>
#include <fmt/format.h>

#include <algorithm>
#include <map>
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
      std::string key = name.substr(0, slash);
      if (!run.run_name.args.empty()) key += " (" + run.run_name.args + ")";
      const double seconds = run.real_accumulated_time / static_cast<double>(run.iterations);
      if (std::find(order_.begin(), order_.end(), key) == order_.end()) order_.push_back(key);
      times_[key][name.substr(slash + 1)].push_back(seconds);
    }
  }

  void Finalize() override {
    fmt::print("{:<46} {:>12} {:>12} {:>7}\n", "operation (documents)", "kvvesk", "floor", "ratio");
    for (const auto& key : order_) {
      auto& both = times_[key];
      const double ours = median(both["kvvesk"]);
      const double floor = median(both["floor"]);
      fmt::print("{:<46} {:>12} {:>12} {:>7.2f}\n", key, shown(ours), shown(floor), ours / floor);
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

  std::vector<std::string> order_;
  std::map<std::string, std::map<std::string, std::vector<double>>> times_;
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
