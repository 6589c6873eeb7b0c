#include "platform/user_folders.h"

#include <cstdlib>
#include <filesystem>
#include <gtest/gtest.h>
#include <pwd.h>
#include <unistd.h>

#include "platform/time_zone.h"
#include "tests/platform/small_files.h"
#include "tests/support/temporary_folder.h"

namespace tarnwick {
namespace {

TEST(UserFolders, FollowTheBaseDirectoryRules) {
  ::setenv("HOME", "/somewhere/else", 1);
  EXPECT_EQ(userHomeFolder(), ::getpwuid(::getuid())->pw_dir);
  ::unsetenv("XDG_CONFIG_HOME");
  ::setenv("XDG_DATA_HOME", "relative/is/ignored", 1);
  EXPECT_EQ(userConfigFolder(), "/somewhere/else/.config");
  EXPECT_EQ(userDataFolder(), "/somewhere/else/.local/share");
  ::setenv("XDG_CONFIG_HOME", "/config", 1);
  ::setenv("XDG_DATA_HOME", "/data", 1);
  EXPECT_EQ(userConfigFolder(), "/config");
  EXPECT_EQ(userDataFolder(), "/data");
  ::unsetenv("HOME");
  ::unsetenv("XDG_CONFIG_HOME");
  EXPECT_EQ(userConfigFolder(), userHomeFolder() + "/.config");
}

class TimeZone : public ::testing::Test {
 protected:
  void SetUp() override {
    sources.zonesFolder = folder / "usr/zoneinfo";
    sources.localtimeLink = folder / "localtime";
    sources.nameFile = folder / "timezone";
    for (const std::string zone :
         {"Europe/Berlin", "America/Argentina/Buenos_Aires", "Etc/GMT+3"}) {
      const std::filesystem::path file = sources.zonesFolder + "/" + zone;
      std::filesystem::create_directories(file.parent_path());
      writeText(file.string(), "TZif2");
    }
  }
  std::string nameWith(const std::string& variable) {
    sources.variable = variable;
    return timeZoneName(sources);
  }

  TemporaryFolder folder;
  TimeZoneSources sources;
};

TEST_F(TimeZone, TheVariableWinsWhenItNamesAZone) {
  writeText(sources.nameFile, "Etc/GMT+3\n");
  EXPECT_EQ(nameWith("Europe/Berlin"), "Europe/Berlin");
  EXPECT_EQ(nameWith(":America/Argentina/Buenos_Aires"), "America/Argentina/Buenos_Aires");
  EXPECT_EQ(nameWith("/usr/share/zoneinfo/posix/Europe/Berlin"), "Europe/Berlin");
  for (const char* unnamed :
       {"", ":", "CET-1CEST,M3.5.0,M10.5.0/3", "<+03>-3", "Europe", "Mars/Base", "../../etc/passwd",
        "Europe/Berlin\nPASSWORD=x", "/etc/localtime"}) {
    EXPECT_EQ(nameWith(unnamed), "Etc/GMT+3") << unnamed;
  }
}

TEST_F(TimeZone, TheLinkComesBeforeTheFileAndUtcIsLast) {
  EXPECT_EQ(timeZoneName(sources), "Etc/UTC");
  writeText(sources.nameFile, "Etc/GMT+3");
  std::filesystem::create_symlink("usr/zoneinfo/Europe/Berlin", sources.localtimeLink);
  EXPECT_EQ(timeZoneName(sources), "Europe/Berlin");
  std::filesystem::remove(sources.localtimeLink);
  writeText(sources.localtimeLink, "TZif2, a copy");
  EXPECT_EQ(timeZoneName(sources), "Etc/GMT+3");
  std::filesystem::remove_all(sources.zonesFolder);
  EXPECT_EQ(nameWith("Asia/Tokyo"), "Asia/Tokyo") << "nothing to check the name against";
}

}  // namespace
}  // namespace tarnwick
