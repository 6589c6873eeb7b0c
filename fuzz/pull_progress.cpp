// The lines of a pull, in any order.
#include "core/engine/pull_progress.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

#include "support/input.h"
#include "support/require.h"

using namespace tarnwick;
using fuzz::require;

namespace {

/// The three numbers of a summary: layers downloaded, all layers, layers unpacked.
void checkSummary(const PullProgress& progress) {
  const std::string summary = progress.summary();
  if (progress.layers().empty()) {
    require(summary == "Downloading the image…", "without layers there is nothing to count");
    return;
  }
  std::size_t downloaded = 0;
  std::size_t all = 0;
  std::size_t unpacked = 0;
  const int numbers = std::sscanf(summary.c_str(), "%zu of %zu layers downloaded, %zu unpacked",
                                  &downloaded, &all, &unpacked);
  require(numbers == 3, "the summary has its three numbers");
  require(all == progress.layers().size(), "the summary counts every layer");
  require(unpacked <= downloaded && downloaded <= all, "what is unpacked was downloaded");
  require((progress.fraction() == 1.0) == (unpacked == all), "done is when all is unpacked");
}

void checkStep(const PullProgress& before, const PullProgress& after) {
  require(after.fraction().has_value() == !after.layers().empty(), "layers make a fraction");
  if (after.fraction()) {
    require(*after.fraction() >= 0.0 && *after.fraction() <= 1.0, "the fraction is within 0 to 1");
  }
  for (const auto& [id, stage] : before.layers()) {
    const auto now = after.layers().find(id);
    require(now != after.layers().end() && now->second >= stage, "no layer is lost or falls back");
  }
  const std::size_t added = after.layers().size() - before.layers().size();
  require(added <= 1, "a line speaks of one layer");
  if (added == 0 && before.fraction()) {
    require(*after.fraction() >= *before.fraction(), "only a new layer makes the fraction fall");
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::Input input(data, size);
  std::vector<std::string> lines = input.remainingLines();

  PullProgress progress;
  for (const std::string& line : lines) {
    const PullProgress before = progress;
    progress.ingest(line);
    checkStep(before, progress);
    checkSummary(progress);
  }

  PullProgress backwards;
  std::ranges::reverse(lines);
  for (const std::string& line : lines) backwards.ingest(line);
  require(backwards.layers() == progress.layers(), "the order of the lines does not matter");
  for (const std::string& line : lines) backwards.ingest(line);
  require(backwards.layers() == progress.layers(), "a repeated line changes nothing");
  return 0;
}
