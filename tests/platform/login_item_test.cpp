#include <algorithm>
#include <filesystem>
#include <glib.h>
#include <gmock/gmock.h>
#include <unistd.h>

#include "platform/system_random.h"
#include "platform/xdg_login_item.h"
#include "tests/platform/small_files.h"
#include "tests/support/temporary_folder.h"

namespace tarnwick {
namespace {

/// What another program of the desktop reads under a key of the entry.
std::string valueIn(const std::string& path, const char* key) {
  GKeyFile* file = g_key_file_new();
  EXPECT_TRUE(g_key_file_load_from_file(file, path.c_str(), G_KEY_FILE_NONE, nullptr));
  gchar* value = g_key_file_get_string(file, "Desktop Entry", key, nullptr);
  EXPECT_NE(value, nullptr);
  std::string result = value != nullptr ? value : "";
  g_free(value);
  g_key_file_free(file);
  return result;
}

std::vector<std::string> wordsOf(const std::string& commandLine) {
  gchar** words = nullptr;
  std::vector<std::string> result;
  if (g_shell_parse_argv(commandLine.c_str(), nullptr, &words, nullptr)) {
    for (gchar** word = words; *word != nullptr; ++word) result.emplace_back(*word);
  }
  g_strfreev(words);
  return result;
}

TEST(LoginItem, RegistersAndUnregistersItself) {
  const TemporaryFolder config;
  XdgLoginItem item(config / "new", "/usr/bin/tarnwick");
  EXPECT_FALSE(item.isEnabled());
  item.registerItem();
  item.registerItem();
  EXPECT_TRUE(item.isEnabled());
  EXPECT_THAT(namesIn(config / "new/autostart"), ::testing::ElementsAre("tarnwick.desktop"));
  item.unregisterItem();
  EXPECT_FALSE(item.isEnabled());
  item.unregisterItem();
}

TEST(LoginItem, AnyPathIsOneWordToOtherPrograms) {
  const TemporaryFolder config;
  const std::string program = "/opt/My \"odd\" $HOME `x` back\\slash/tarnwick";
  XdgLoginItem item(config.path(), program);
  item.registerItem();
  const std::string entry = config / "autostart/tarnwick.desktop";
  EXPECT_THAT(wordsOf(valueIn(entry, "Exec")), ::testing::ElementsAre(program, "--background"));
  EXPECT_EQ(valueIn(entry, "TryExec"), program);
}

TEST(LoginItem, APercentSignIsNoFieldCode) {
  const TemporaryFolder config;
  XdgLoginItem(config.path(), "/opt/100%f/tarnwick").registerItem();
  EXPECT_THAT(readText(config / "autostart/tarnwick.desktop"),
              ::testing::HasSubstr("Exec=\"/opt/100%%f/tarnwick\" --background\n"));
}

TEST(LoginItem, SeesWhatToolsOfTheDesktopSwitchedOff) {
  const TemporaryFolder config;
  XdgLoginItem item(config.path(), "/usr/bin/tarnwick");
  item.registerItem();
  const std::string path = config / "autostart/tarnwick.desktop";
  const std::string entry = readText(path);
  struct Case {
    std::string text;
    bool enabled;
  };
  const std::string start = "[Desktop Entry]\nType=Application\nExec=tarnwick\n";
  ::setenv("XDG_CURRENT_DESKTOP", "ubuntu:GNOME", 1);
  for (const Case& one :
       {Case{entry + "Hidden=true\n", false}, Case{start + " Hidden = true \r\n", false},
        Case{start + "X-GNOME-Autostart-enabled=false\n", false},
        Case{start + "Hidden=false\n", true},
        Case{start + "[Desktop Action x]\nHidden=true\n", true},
        Case{start + "OnlyShowIn=XFCE;GNOME;\n", true}, Case{start + "OnlyShowIn=XFCE;\n", false},
        Case{start + "NotShowIn=ubuntu\n", false}, Case{start + "NotShowIn=KDE;\n", true},
        Case{"# Hidden=true\n" + start, true}, Case{"", false}, Case{"\xff\xfe no entry", false}}) {
    writeText(path, one.text);
    EXPECT_EQ(item.isEnabled(), one.enabled) << one.text;
  }
  for (const char* line :
       {"Hidden=true\n", "X-GNOME-Autostart-enabled=false\n", "NotShowIn=GNOME;\n"}) {
    writeText(path, start + line);
    item.registerItem();
    EXPECT_TRUE(item.isEnabled()) << line;
  }
  ::unsetenv("XDG_CURRENT_DESKTOP");
}

TEST(LoginItem, AnErrorShowsInTheStatusOnly) {
  const TemporaryFolder config;
  writeText(config / "file", "in the way");
  XdgLoginItem item(config / "file", "/usr/bin/tarnwick");
  item.registerItem();
  EXPECT_FALSE(item.isEnabled());
  item.unregisterItem();
}

TEST(SystemRandom, GivesAsManyFreshBytesAsAsked) {
  SystemRandom random;
  const auto large = random.bytes(100'000);
  ASSERT_TRUE(large.has_value());
  EXPECT_EQ(large->size(), 100'000U);
  EXPECT_LT(std::count(large->end() - 64, large->end(), 0), 32);
  EXPECT_NE(random.bytes(12), random.bytes(12));
}

}  // namespace
}  // namespace tarnwick
