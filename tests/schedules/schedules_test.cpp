#include <cstdlib>
#include <fmt/format.h>
#include <gtest/gtest.h>

#include "core/engine/port_check.h"
#include "tests/schedules/scheduled_world.h"
#include "tests/support/temporary_folder.h"

namespace tarnwick {
namespace {

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr bool sanitized = true;
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
constexpr bool sanitized = true;
#else
constexpr bool sanitized = false;
#endif
#else
constexpr bool sanitized = false;
#endif

constexpr int shards = 4;

std::optional<std::uint64_t> number(const char* variable) {
  const char* const text = std::getenv(variable);
  if (text == nullptr || *text == '\0') return std::nullopt;
  return std::strtoull(text, nullptr, 10);
}

std::filesystem::path memoryFolder() {
  const std::filesystem::path shared = "/dev/shm";
  return ::access(shared.c_str(), W_OK) == 0 ? shared : std::filesystem::temp_directory_path();
}

/// Schedules in parts, which may run side by side.
class Schedules : public testing::TestWithParam<int> {
 protected:
  Schedules() {
    const auto [http, https] = PortCheck::freePair(24'000);
    ground.folder = folder.path();
    ground.httpPort = http;
    ground.httpsPort = https;
  }
  std::string story(std::uint64_t seed) {
    ScheduledWorld world(ground, seed, seen);
    world.listen();
    const std::string broken = world.run();
    return fmt::format("{}\nseed {} (TARNWICK_SCHEDULE_SEED replays it): {}\n", world.story(), seed,
                       broken.empty() ? "all holds" : "NOT SO: " + broken);
  }

  TemporaryFolder folder{memoryFolder()};
  ScheduleGround ground;
  Sightings seen;
};

TEST_P(Schedules, KeepTheInvariants) {
  if (const auto seed = number("TARNWICK_SCHEDULE_SEED")) {
    if (GetParam() > 0) GTEST_SKIP() << "one schedule only";
    const std::string told = story(*seed);
    std::fputs(told.c_str(), stdout);
    ASSERT_EQ(ScheduledWorld(ground, *seed, seen).run(), "");
    return;
  }
  const std::uint64_t whole = number("TARNWICK_SCHEDULES").value_or(sanitized ? 10'000 : 100'000);
  const std::uint64_t count = whole / shards;
  const std::uint64_t first = count * static_cast<std::uint64_t>(GetParam());
  for (std::uint64_t seed = first; seed < first + count; ++seed) {
    const std::string broken = ScheduledWorld(ground, seed, seen).run();
    ASSERT_EQ(broken, "") << story(seed);
  }
  fmt::print(
      "{} of {} schedules{}: {} runs, of which {} showed the desktop, {} failed, {} were cancelled "
      "and {} met a taken port; {} desktops adopted, {} lost, {} stops\n",
      count, whole, sanitized ? " (fewer by default, since this build has a sanitizer)" : "",
      seen.runs, seen.shown, seen.failed, seen.cancelled, seen.conflicts, seen.adopted, seen.lost,
      seen.stops);
  if (count < 500) return;
  for (const int sightings : {seen.shown, seen.failed, seen.cancelled, seen.conflicts, seen.adopted,
                              seen.lost, seen.stops}) {
    EXPECT_GT(sightings, 0) << "the search misses something";
  }
}

INSTANTIATE_TEST_SUITE_P(Part, Schedules, testing::Range(0, shards));

}  // namespace
}  // namespace tarnwick
