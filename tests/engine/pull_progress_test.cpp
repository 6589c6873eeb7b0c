#include "core/engine/pull_progress.h"

#include <gtest/gtest.h>

namespace tarnwick {
namespace {

PullProgress after(std::initializer_list<const char*> lines) {
  PullProgress pull;
  for (const char* line : lines) pull.ingest(line);
  return pull;
}

TEST(PullProgress, CountsLayersByTheStageTheyReached) {
  const PullProgress none;
  EXPECT_EQ(none.fraction(), std::nullopt);
  EXPECT_EQ(none.summary(), "Downloading the image…");

  const PullProgress half = after({"a1b2c3d4e5f6: Download complete", "b1b2c3d4e5f6: Waiting"});
  EXPECT_EQ(half.fraction(), 0.25);
  EXPECT_EQ(half.summary(), "1 of 2 layers downloaded, 0 unpacked");

  const PullProgress mixed = after({
      "latest: Pulling from linuxserver/webtop",
      "000000000001: Already exists",
      "000000000002: Pulling fs layer",
      "000000000003: Downloading [==>    ]  1.2MB/30MB",
      "000000000004: Verifying Checksum",
      "000000000005: Extracting [=====>]  3MB/3MB",
      "000000000006: Pull complete",
      "Digest: sha256:0123456789abcdef0123456789abcdef",
      "Status: Downloaded newer image for linuxserver/webtop:latest",
  });
  EXPECT_EQ(mixed.fraction(), 6.0 / 12.0);
  EXPECT_EQ(mixed.summary(), "4 of 6 layers downloaded, 2 unpacked");
}

TEST(PullProgress, StagesNeverFallButLateLayersLowerTheFraction) {
  PullProgress pull = after({"a1b2c3d4e5f6: Pulling fs layer", "a1b2c3d4e5f6: Pull complete"});
  EXPECT_EQ(pull.fraction(), 1.0);
  EXPECT_EQ(pull.summary(), "1 of 1 layers downloaded, 1 unpacked");
  pull.ingest("a1b2c3d4e5f6: Downloading");
  pull.ingest("a1b2c3d4e5f6: Download complete");
  EXPECT_EQ(pull.fraction(), 1.0);
  pull.ingest("b1b2c3d4e5f6: Waiting");
  EXPECT_EQ(pull.fraction(), 0.5);
}

TEST(PullProgress, IgnoresWhatIsNotALayerOrAStage) {
  const PullProgress pull = after({
      "",
      ": Waiting",
      "a1b2c3d4e5f: Waiting",
      "a1b2c3d4e5fg: Waiting",
      "a1b2c3d4e5f6:Waiting",
      " a1b2c3d4e5f6: Waiting",
      "a1b2c3d4e5f6 : Waiting",
      "a1b2c3d4e5f6: pull complete",
      "a1b2c3d4e5f6:  Waiting",
      "a1b2c3d4e5f6: Retrying in 5 seconds",
      "note: a1b2c3d4e5f6: Waiting",
      "a1b2c3d4e5f6\xEF: Waiting",
      "a1b2c3d4e5f6\xEF\xBC: Waiting",
      "ａａａａ: Waiting",
      "a1b2c3d4e5ｇ６: Waiting",
  });
  EXPECT_TRUE(pull.layers().empty());

  PullProgress known = after({"a1b2c3d4e5f6: Download complete"});
  known.ingest("a1b2c3d4e5f6: Unpacking");
  EXPECT_EQ(known.fraction(), 0.5);
}

TEST(PullProgress, AcceptsLongUppercaseAndFullwidthIds) {
  const PullProgress pull = after({
      "A1B2C3D4E5F6: Waiting",
      "a1b2c3d4e5f6: Waiting",
      "a1b2c3d4e5f60718293a: Waiting",
      "０１２３４５６７８９Ａｆ: Pull complete",
      "０１２３４５６７８９ａＦ: Already exists",
  });
  EXPECT_EQ(pull.layers().size(), 5U);
  EXPECT_EQ(pull.fraction(), 0.4);
}

}  // namespace
}  // namespace tarnwick
