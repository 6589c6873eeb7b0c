#include "bench/comparison.h"

#include <algorithm>
#include <benchmark/benchmark.h>
#include <cstdio>
#include <map>
#include <optional>

namespace tarnwick {
namespace {

class MedianReporter : public benchmark::ConsoleReporter {
 public:
  void ReportRuns(const std::vector<Run>& runs) override {
    std::vector<Run> shown;
    for (const Run& run : runs) {
      if (run.run_type != Run::RT_Iteration || run.error_occurred) {
        if (run.error_occurred || run.aggregate_name == "median") shown.push_back(run);
        continue;
      }
      const double seconds = run.real_accumulated_time / static_cast<double>(run.iterations);
      seconds_[run.run_name.function_name].push_back(seconds);
    }
    if (!shown.empty()) ConsoleReporter::ReportRuns(shown);
  }

  [[nodiscard]] std::optional<double> median(const std::string& name) const {
    const auto found = seconds_.find(name);
    if (found == seconds_.end()) return std::nullopt;
    std::vector<double> sorted = found->second;
    std::sort(sorted.begin(), sorted.end());
    const std::size_t middle = sorted.size() / 2;
    if (sorted.size() % 2 == 1) return sorted[middle];
    return (sorted[middle - 1] + sorted[middle]) / 2;
  }

 private:
  std::map<std::string, std::vector<double>> seconds_;
};

const char* verdict(bool met) {
  return met ? "met" : "MISSED";
}

}  // namespace

int runAndCompare(int argc, char** argv, const std::vector<Comparison>& comparisons,
                  const std::vector<Throughput>& throughputs) {
  std::vector<std::string> defaults{argv[0], "--benchmark_repetitions=15",
                                    "--benchmark_enable_random_interleaving=true"};
  std::vector<char*> arguments;
  for (std::string& text : defaults) arguments.push_back(text.data());
  arguments.insert(arguments.end(), argv + 1, argv + argc);
  int count = static_cast<int>(arguments.size());
  benchmark::Initialize(&count, arguments.data());
  if (benchmark::ReportUnrecognizedArguments(count, arguments.data())) return 1;

  MedianReporter reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter);
  benchmark::Shutdown();

  std::printf("\n%-58s %10s %10s\n", "target (medians)", "measured", "bound");
  for (const auto& [what, ours, other, atMost] : comparisons) {
    const auto mine = reporter.median(ours);
    const auto theirs = reporter.median(other);
    if (!mine || !theirs) continue;
    const double ratio = *mine / *theirs;
    std::printf("%-58s %9.2fx %9.2fx %s\n", what.c_str(), ratio, atMost, verdict(ratio <= atMost));
  }
  for (const auto& [what, ours, megabytes, atLeast] : throughputs) {
    const auto mine = reporter.median(ours);
    if (!mine) continue;
    const double rate = megabytes / *mine;
    std::printf("%-58s %5.0f MB/s %5.0f MB/s %s\n", what.c_str(), rate, atLeast,
                verdict(rate >= atLeast));
  }
  return 0;
}

}  // namespace tarnwick
