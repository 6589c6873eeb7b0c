#include <csignal>
#include <filesystem>
#include <gmock/gmock.h>
#include <nlohmann/json.hpp>
#include <sched.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "core/files/read_file.h"
#include "platform/json_key_value_store.h"
#include "tests/platform/small_files.h"
#include "tests/support/temporary_folder.h"

namespace tarnwick {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::UnorderedElementsAre;

class SettingsFile : public ::testing::Test {
 protected:
  JsonKeyValueStore open() { return JsonKeyValueStore(path, tell); }

  TemporaryFolder folder;
  std::string path = folder / "settings.json";
  std::vector<std::string> told;
  JsonKeyValueStore::ProblemHandler tell = [this](const std::string& sentence) {
    told.push_back(sentence);
  };
};

TEST_F(SettingsFile, EveryKindOfValueComesBackFromDisk) {
  path = folder / "new/config/settings.json";
  {
    JsonKeyValueStore store = open();
    store.setString("shareFolder", "/home/ann/Bücher \"x\"\n");
    store.setInteger("httpsPort", -9223372036854775807LL - 1);
    store.setBoolean("requirePassword", true);
    store.setStringList("launchedFlavors", {"debian-kde", "alpine-xfce"});
    store.setStringList("empty", {});
  }
  JsonKeyValueStore store = open();
  EXPECT_EQ(store.string("shareFolder"), "/home/ann/Bücher \"x\"\n");
  EXPECT_EQ(store.integer("httpsPort"), -9223372036854775807LL - 1);
  EXPECT_TRUE(store.boolean("requirePassword"));
  EXPECT_THAT(store.stringList("launchedFlavors").value(),
              ElementsAre("debian-kde", "alpine-xfce"));
  EXPECT_THAT(store.stringList("empty").value(), IsEmpty());
  EXPECT_THAT(told, IsEmpty());

  struct stat info {};
  ASSERT_EQ(::stat(path.c_str(), &info), 0);
  EXPECT_EQ(info.st_mode & 0777U, 0600U);
  ASSERT_EQ(::stat((folder / "new/config").c_str(), &info), 0);
  EXPECT_EQ(info.st_mode & 0777U, 0700U);
}

TEST_F(SettingsFile, ValuesOfOtherTypesReadAsNone) {
  writeText(path, R"({"text": "4", "whole": 4.0, "large": 18446744073709551615, "null": null,
                      "mixed": ["a", 1], "one": 1, "yes": "true"})");
  JsonKeyValueStore store = open();
  for (const char* key : {"text", "whole", "large", "null", "mixed", "yes", "absent"}) {
    EXPECT_EQ(store.integer(key), std::nullopt) << key;
    EXPECT_FALSE(store.boolean(key)) << key;
    EXPECT_EQ(store.stringList(key), std::nullopt) << key;
  }
  EXPECT_EQ(store.string("one"), std::nullopt);
  EXPECT_FALSE(store.boolean("one"));
  EXPECT_EQ(store.string("text"), "4");
  EXPECT_THAT(told, IsEmpty());
}

TEST_F(SettingsFile, WhatItDoesNotKnowSurvivesARewrite) {
  writeText(path, R"({"future": {"deep": [1, {"x": null}]}, "cpu": "four", "disk": 20})");
  open().setInteger("disk", 40);
  const auto now = nlohmann::json::parse(readText(path));
  EXPECT_EQ(now, nlohmann::json::parse(
                     R"({"future": {"deep": [1, {"x": null}]}, "cpu": "four", "disk": 40})"));
}

TEST_F(SettingsFile, TextThatIsNotUtf8CostsNoOtherSetting) {
  open().setInteger("cpu", 7);
  open().setString("shareFolder", "/home/\xff\xfe");
  EXPECT_EQ(open().integer("cpu"), 7);
  EXPECT_THAT(told, IsEmpty());
}

TEST_F(SettingsFile, ADamagedFileIsKeptAsideAndNeverOverAnEarlierOne) {
  const std::string deep = "{\"a\": " + std::string(200'000, '[') + std::string(200'000, ']') + "}";
  const std::vector<std::string> damaged = {"",
                                            "{\"cpu\": 4",
                                            "settings",
                                            "[1, 2]",
                                            "{\"cpu\": 1e999}",
                                            deep,
                                            std::string((16U << 20U) + 1, ' ')};
  for (std::size_t i = 0; i < damaged.size(); ++i) {
    told.clear();
    writeText(path, damaged[i]);
    JsonKeyValueStore store = open();
    EXPECT_EQ(store.integer("cpu"), std::nullopt);
    store.setInteger("cpu", 3);
    EXPECT_EQ(open().integer("cpu"), 3);
    const std::string aside = path + ".bad" + (i == 0 ? "" : std::to_string(i));
    EXPECT_EQ(readText(aside).size(), damaged[i].size());
    ASSERT_EQ(told.size(), 1U);
    EXPECT_THAT(told[0], HasSubstr(aside + ","));
  }
}

TEST_F(SettingsFile, ALinkIsKeptAndItsTargetReplaced) {
  std::filesystem::create_directory(folder / "dotfiles");
  writeText(folder / "dotfiles/real.json", R"({"cpu": 4})");
  std::filesystem::create_symlink("dotfiles/real.json", path);
  open().setInteger("cpu", 8);
  EXPECT_TRUE(std::filesystem::is_symlink(path));
  EXPECT_THAT(readText(folder / "dotfiles/real.json"), HasSubstr("\"cpu\": 8"));

  writeText(folder / "dotfiles/real.json", "");
  open().setInteger("cpu", 9);
  EXPECT_TRUE(std::filesystem::is_symlink(path));
  EXPECT_THAT(namesIn(folder / "dotfiles"), UnorderedElementsAre("real.json", "real.json.bad"));
  EXPECT_EQ(open().integer("cpu"), 9);
}

TEST_F(SettingsFile, WhatCannotBeReadIsLeftAlone) {
  std::filesystem::create_directory(path);
  JsonKeyValueStore store = open();
  store.setInteger("cpu", 3);
  store.setInteger("cpu", 4);
  EXPECT_EQ(store.integer("cpu"), 4);
  EXPECT_TRUE(std::filesystem::is_directory(path));
  EXPECT_THAT(namesIn(folder.path()), ElementsAre("settings.json"));
  ASSERT_EQ(told.size(), 1U);
  EXPECT_THAT(told[0], HasSubstr("Is a directory"));
}

TEST_F(SettingsFile, AFileWithoutReadPermissionIsLeftAlone) {
  writeText(path, R"({"cpu": 4})");
  std::filesystem::permissions(path, std::filesystem::perms::none);
  ASSERT_EQ(::chmod(folder.path().c_str(), 0777), 0);
  // Permission bits mean nothing to root, so the store runs as somebody else.
  const pid_t child = ::fork();
  ASSERT_GE(child, 0);
  if (child == 0) {
    if (::geteuid() == 0 && (::setgid(65534) != 0 || ::setuid(65534) != 0)) ::_exit(2);
    JsonKeyValueStore store = open();
    store.setInteger("cpu", 8);
    ::_exit(store.integer("cpu") == 8 && told.size() == 1 ? 0 : 1);
  }
  int status = 0;
  ASSERT_EQ(::waitpid(child, &status, 0), child);
  EXPECT_EQ(status, 0);
  std::filesystem::permissions(path, std::filesystem::perms::owner_read);
  EXPECT_EQ(readText(path), R"({"cpu": 4})");
  EXPECT_THAT(namesIn(folder.path()), ElementsAre("settings.json"));
}

TEST_F(SettingsFile, AFailedSaveIsToldOnceUntilOneWorks) {
  writeText(folder / "file", "in the way");
  path = folder / "file/settings.json";
  JsonKeyValueStore store = open();
  store.setInteger("cpu", 3);
  store.setInteger("cpu", 4);
  EXPECT_EQ(store.integer("cpu"), 4);
  ASSERT_EQ(told.size(), 1U);
  EXPECT_THAT(told[0], HasSubstr("Not a directory"));

  std::filesystem::remove(folder / "file");
  store.setInteger("memory", 8);
  EXPECT_EQ(open().integer("cpu"), 4);
  std::filesystem::remove_all(folder / "file");
  writeText(folder / "file", "again");
  store.setInteger("cpu", 5);
  EXPECT_EQ(told.size(), 2U);
}

TEST_F(SettingsFile, AFullDiskKeepsTheOldFileAndLeavesNoRubbish) {
  if (::unshare(CLONE_NEWNS) != 0 || ::mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) ||
      ::mount("none", folder.path().c_str(), "tmpfs", 0, "size=64k") != 0) {
    GTEST_SKIP() << "no file system may be mounted here, so no full disk can be had";
  }
  JsonKeyValueStore store = open();
  store.setString("flavor", "alpine-xfce");
  const std::string before = readText(path);
  writeText(folder / "filler", std::string(60U << 10U, 'x'));
  store.setString("shareFolder", std::string(8000, 'y'));
  EXPECT_EQ(readText(path), before);
  EXPECT_THAT(namesIn(folder.path()), UnorderedElementsAre("settings.json", "filler"));
  ASSERT_EQ(told.size(), 1U);
  EXPECT_THAT(told[0], HasSubstr("No space left on device"));

  std::filesystem::remove(folder / "filler");
  store.setInteger("cpu", 3);
  EXPECT_EQ(open().string("shareFolder"), std::string(8000, 'y'));
  ::umount2(folder.path().c_str(), MNT_DETACH);
}

TEST(ReadFile, TellsWhatStandsInTheWay) {
  const TemporaryFolder folder;
  ASSERT_EQ(::mkfifo((folder / "pipe").c_str(), 0600), 0);
  writeText(folder / "ten", "0123456789");
  EXPECT_EQ(readFile(folder / "absent", 10).state, FileState::missing);
  EXPECT_EQ(readFile(folder / "ten/below", 10).state, FileState::missing);
  EXPECT_EQ(readFile(folder / "pipe", 10).state, FileState::unreadable);
  EXPECT_EQ(readFile(folder.path(), 10).state, FileState::unreadable);
  EXPECT_EQ(readFile(folder / "ten", 9).state, FileState::tooLarge);
  EXPECT_EQ(readFile(folder / "ten", 10).bytes, "0123456789");
  // A file that announces no size.
  EXPECT_THAT(readFile("/proc/self/status", 1U << 20U).bytes, HasSubstr("Name:"));
  EXPECT_EQ(readFile("/proc/self/status", 10).state, FileState::tooLarge);
}

}  // namespace
}  // namespace tarnwick
