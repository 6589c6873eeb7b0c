#pragma once

#include <string>
#include <vector>

namespace tarnwick {

/// A target that is a ratio of two benchmarks' median times in the same run.
struct Comparison {
  std::string what;
  std::string ours;   ///< name of a benchmark
  std::string other;  ///< name of the benchmark that it is held against
  double atMost;      ///< bound of ours / other
};

/// A target in megabytes a second.
struct Throughput {
  std::string what;
  std::string ours;
  double megabytes;  ///< handled in one iteration
  double atLeast;    ///< megabytes a second
};

/// Runs the registered benchmarks in short turns in random order, so that the machine's other load
/// meets all of them alike, and prints a table of the targets from the medians. A target whose
/// benchmarks were not run (filtered, or not built) is left out. Gives main()'s result.
int runAndCompare(int argc, char** argv, const std::vector<Comparison>& comparisons,
                  const std::vector<Throughput>& throughputs);

}  // namespace tarnwick
