#include <gtest/gtest.h>

#include "tests/support/controller_harness.h"

namespace tarnwick {
namespace {

TEST(ControllerState, AFreshControllerIsStopped) {
  ControllerHarness world;
  const DesktopController& c = world.controller;
  EXPECT_EQ(c.statusText(), "Stopped");
  EXPECT_EQ(c.desktopURL(), "https://127.0.0.1:3001/");
  ASSERT_EQ(c.stages.get().size(), 4U);
  EXPECT_EQ(c.stages.get()[2].title, "Desktop starting");
  EXPECT_TRUE(c.log->empty());
}

TEST(ControllerState, AnAddressThatCannotBeIsNone) {
  ControllerHarness world;
  for (const std::int64_t port : {-1, 65'536, 70'000}) {
    world.controller.settings.httpsPort = port;
    EXPECT_FALSE(world.controller.desktopURL()) << port;
  }
}

TEST(ControllerState, AnUnknownFlavorShowsAsStandard) {
  ControllerHarness world;
  world.controller.settings.flavorID = "Alpine-XFCE";
  world.container = ControllerHarness::image;
  world.containerRuns = true;
  world.container = "elsewhere/image:1";
  world.controller.startMonitor();
  world.mainThread.advance(std::chrono::seconds(1));
  EXPECT_EQ(world.controller.statusText(), "Running (Standard)");
  EXPECT_EQ(world.controller.settings.flavorID.get(), "Alpine-XFCE");
}

TEST(ControllerState, EveryReloadRequestIsOne) {
  ControllerHarness world;
  world.controller.reloadDesktop();
  world.controller.reloadDesktop();
  EXPECT_EQ(world.controller.reloadToken.get(), 2);
}

}  // namespace
}  // namespace tarnwick
