#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>

#include "tests/support/settings_fixture.h"

namespace tarnwick {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Strings = std::vector<std::string>;

class SettingsStoreTest : public testing::Test, protected SettingsFixture {
 protected:
  void expectDefaults() const {
    EXPECT_EQ(settings->flavorID.get(), "alpine-xfce");
    EXPECT_EQ(settings->cpu.get(), 2);
    EXPECT_EQ(settings->memory.get(), 4);
    EXPECT_EQ(settings->disk.get(), 20);
    EXPECT_EQ(settings->httpPort.get(), 3000);
    EXPECT_EQ(settings->httpsPort.get(), 3001);
    EXPECT_FALSE(settings->stopColimaOnQuit.get());
    EXPECT_EQ(settings->shareFolder.get(), "");
    EXPECT_FALSE(settings->colimaAtLogin.get());
    EXPECT_THAT(settings->launchedFlavors.get(), IsEmpty());
    EXPECT_FALSE(settings->requirePassword());
  }
};

TEST_F(SettingsStoreTest, MissingAndMistypedValuesReadAsTheDefaults) {
  startAndLoad();
  expectDefaults();
  for (const char* key : {"cpu", "memory", "disk", "httpPort", "httpsPort", "stopColimaOnQuit",
                          "colimaAtLogin", "requirePassword", "launchedFlavors"}) {
    store.values[key] = std::string("4");
  }
  store.values["flavor"] = std::int64_t{7};
  store.values["shareFolder"] = true;
  startAndLoad();
  expectDefaults();
  EXPECT_THAT(store.writes, IsEmpty());
}

TEST_F(SettingsStoreTest, EveryChangeIsReadBackByTheNextStart) {
  startAndLoad();
  settings->flavorID = "debian-kde";
  settings->cpu = 0;
  settings->memory = -1;
  settings->disk = 200;
  settings->httpPort = 4000;
  settings->httpsPort = 70000;
  settings->stopColimaOnQuit = true;
  settings->shareFolder = "/home/me/Documents";
  settings->colimaAtLogin = true;
  settings->launchedFlavors = Strings{"b", "a"};
  EXPECT_EQ(store.writes.size(), 10U) << "each change writes once";
  EXPECT_EQ(store.values["httpsPort"], MemoryKeyValueStore::Value(std::int64_t{70000}));

  startAndLoad();
  EXPECT_EQ(settings->flavorID.get(), "debian-kde");
  EXPECT_EQ(settings->cpu.get(), 0);
  EXPECT_EQ(settings->memory.get(), -1);
  EXPECT_EQ(settings->disk.get(), 200);
  EXPECT_EQ(settings->httpPort.get(), 4000);
  EXPECT_EQ(settings->httpsPort.get(), 70000);
  EXPECT_TRUE(settings->stopColimaOnQuit.get());
  EXPECT_EQ(settings->shareFolder.get(), "/home/me/Documents");
  EXPECT_TRUE(settings->colimaAtLogin.get());
  EXPECT_THAT(settings->launchedFlavors.get(), ElementsAre("b", "a"));

  settings->shareFolder = "";
  EXPECT_EQ(store.values["shareFolder"], MemoryKeyValueStore::Value(std::string()));
}

TEST_F(SettingsStoreTest, AssignmentsAreAnnouncedBeforeTheyAreStoredAndWritten) {
  startAndLoad();
  std::int64_t cpuWhenTold = 0;
  std::size_t writesWhenTold = 99;
  const auto handle = settings->changes().observe([&] {
    cpuWhenTold = settings->cpu.get();
    writesWhenTold = store.writes.size();
  });
  settings->cpu = 8;
  EXPECT_EQ(cpuWhenTold, 2);
  EXPECT_EQ(writesWhenTold, 0U);
}

TEST_F(SettingsStoreTest, LaunchedFlavorsAreMarkedOnceAndForgottenTogether) {
  store.values["launchedFlavors"] = Strings{"x", "a", "x", "b"};
  startAndLoad();
  int told = 0;
  const auto handle = settings->changes().observe([&told] { ++told; });
  settings->markLaunched("a");
  EXPECT_THAT(store.writes, IsEmpty());
  EXPECT_EQ(told, 0);
  EXPECT_FALSE(settings->hasLaunchedCurrent());
  settings->markLaunched("alpine-xfce");
  EXPECT_TRUE(settings->hasLaunchedCurrent());
  settings->forgetLaunched("x");
  EXPECT_THAT(settings->launchedFlavors.get(), ElementsAre("a", "b", "alpine-xfce"));
  settings->forgetLaunched("never there");
  EXPECT_EQ(told, 3);
  EXPECT_EQ(store.writes, Strings(3, "launchedFlavors"));
}

TEST_F(SettingsStoreTest, LaunchAtLoginShowsWhatThePlatformReports) {
  loginItem.enabled = true;
  startAndLoad();
  EXPECT_TRUE(settings->launchAtLogin.get());
  settings->setLaunchAtLogin(false);
  EXPECT_FALSE(settings->launchAtLogin.get());
  loginItem.heedsRequests = false;
  settings->setLaunchAtLogin(true);
  EXPECT_FALSE(settings->launchAtLogin.get());
  EXPECT_THAT(store.writes, IsEmpty());
}

TEST_F(SettingsStoreTest, ASharedFolderIsValidOnlyWhileItIsAFolder) {
  namespace fs = std::filesystem;
  std::string pattern = (fs::temp_directory_path() / "share-XXXXXX").string();
  const fs::path root = ::mkdtemp(pattern.data());
  std::ofstream(root / "file") << "text";
  fs::create_directory_symlink(root, root / "link");
  startAndLoad();
  const auto validity = [this](const fs::path& path) {
    settings->shareFolder = path.string();
    return settings->validSharePath();
  };
  EXPECT_EQ(validity(root), root.string());
  EXPECT_EQ(validity(root / "link"), (root / "link").string());
  EXPECT_EQ(validity(""), std::nullopt);
  EXPECT_EQ(validity(root / "file"), std::nullopt);
  EXPECT_EQ(validity(root / "file" / "below"), std::nullopt);
  EXPECT_EQ(validity(root / "missing"), std::nullopt);
  fs::remove_all(root);
  EXPECT_EQ(validity(root), std::nullopt);
}

}  // namespace
}  // namespace tarnwick
