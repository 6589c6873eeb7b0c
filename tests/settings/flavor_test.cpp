#include "core/settings/flavor.h"

#include <gtest/gtest.h>
#include <set>

namespace tarnwick {
namespace {

TEST(Flavor, UnknownIdsResolveToTheStandardOne) {
  for (const char* id : {"alpine-xfce", "Alpine-XFCE", "", "alpine-xfce ", "latest"}) {
    EXPECT_EQ(Flavor::resolve(id).tag, "latest") << id;
  }
  EXPECT_EQ(Flavor::find("Alpine-XFCE"), nullptr);
  EXPECT_EQ(Flavor::find(""), nullptr);
  EXPECT_EQ(Flavor::resolve("ubuntu-kde"), Flavor::all().back());
}

TEST(Flavor, OnlyTheStandardTagDiffersFromItsIdAndVolumesAreDistinct) {
  std::set<std::string> volumes;
  for (const Flavor& flavor : Flavor::all()) {
    EXPECT_EQ(flavor.id == flavor.tag, flavor.id != "alpine-xfce") << flavor.id;
    EXPECT_EQ(Flavor::find(flavor.id), &flavor);
    volumes.insert(flavor.volumeName());
  }
  EXPECT_EQ(volumes.size(), Flavor::all().size());
  EXPECT_TRUE(volumes.contains("tarnwick-config-debian-kde"));
}

TEST(Flavor, PickerShowsNameDesktopAndSize) {
  EXPECT_EQ(Flavor::resolve("").pickerText(), "Standard: XFCE on Alpine, about 1 GB");
}

}  // namespace
}  // namespace tarnwick
