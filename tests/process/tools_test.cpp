#include "core/process/tools.h"

#include <cstdlib>
#include <gtest/gtest.h>

#include "tests/support/temporary_folder.h"

namespace tarnwick {
namespace {

constexpr auto executable = std::filesystem::perms(0755);

class ToolsTest : public testing::Test {
 protected:
  [[nodiscard]] Tools make(Environment inherited) const {
    return Tools(Tools::Config::forEnvironment(std::move(inherited)),
                 AppPaths(home_.path() + "/data", home_.path()));
  }
  [[nodiscard]] std::string path(const std::string& name) const {
    return home_.path() + "/" + name;
  }

  TemporaryFolder home_;
};

TEST_F(ToolsTest, FindsTheFirstExecutableFileInTheToolFoldersOnly) {
  home_.write("first/docker", "", executable);
  home_.write("second/docker", "", executable);
  home_.write("first/colima", "not executable");
  home_.write("second/colima", "", executable);
  std::filesystem::create_directories(path("first/brew"));
  const Tools tools = make({{"TARNWICK_TOOL_FOLDERS", path("first") + ":" + path("second")}});
  EXPECT_EQ(tools.find("docker"), path("first/docker"));
  EXPECT_EQ(tools.find("colima"), path("second/colima"));
  EXPECT_EQ(tools.find("brew"), std::nullopt);  // a folder
  EXPECT_EQ(tools.find("env"), std::nullopt);   // in the system folders
  EXPECT_EQ(tools.find(""), std::nullopt);
  EXPECT_EQ(tools.find("../second/docker"), std::nullopt);

  std::filesystem::remove(path("first/docker"));
  EXPECT_EQ(tools.find("docker"), path("second/docker"));
}

TEST_F(ToolsTest, ComposesTheSearchPath) {
  const std::string system = "/usr/bin:/bin:/usr/sbin:/sbin";
  const std::string standard =
      "/opt/homebrew/bin:/usr/local/bin:/Applications/Docker.app/Contents/Resources/bin:" + system;
  const auto pathWith = [this](const std::string& folders) {
    return make({{"TARNWICK_TOOL_FOLDERS", folders}}).environment({}).at("PATH");
  };
  EXPECT_EQ(make({}).environment({}).at("PATH"), standard);
  EXPECT_EQ(pathWith("/a"), "/a:" + system);
  EXPECT_EQ(pathWith("/a:/b c"), "/a:/b c:" + system);
  // What is no absolute path would depend on where the program was started.
  EXPECT_EQ(pathWith(":/a::relative:"), "/a:" + system);
  for (const std::string nothing : {"", ":", "relative"}) EXPECT_EQ(pathWith(nothing), standard);
}

TEST_F(ToolsTest, ExtraEntriesWinOverOursAndOursOverTheInherited) {
  const Tools tools = make({{"PATH", "/mine"}, {"HOMEBREW_NO_ENV_HINTS", "0"}, {"A", "1"}});
  const Environment plain = tools.environment({});
  EXPECT_EQ(plain.at("HOMEBREW_NO_ENV_HINTS"), "1");
  EXPECT_EQ(plain.at("A"), "1");
  EXPECT_EQ(plain.size(), 3U);
  const Environment extra = tools.environment({{"PATH", "/x"}, {"A", "2"}, {"PASSWORD", "p"}});
  EXPECT_EQ(extra.at("PATH"), "/x");
  EXPECT_EQ(extra.at("A"), "2");
  EXPECT_EQ(extra.at("PASSWORD"), "p");
}

TEST_F(ToolsTest, TakesTheEnvironmentOfTheProcess) {
  ::setenv("TARNWICK_TEST_VALUE", "a=b", 1);
  ::setenv("TARNWICK_TOOL_FOLDERS", "/from/the/environment", 1);
  const Tools::Config config = Tools::Config::fromProcess();
  ::unsetenv("TARNWICK_TEST_VALUE");
  ::unsetenv("TARNWICK_TOOL_FOLDERS");
  EXPECT_EQ(config.inherited.at("TARNWICK_TEST_VALUE"), "a=b");
  EXPECT_EQ(config.toolFolders, std::vector<std::string>{"/from/the/environment"});
}

}  // namespace
}  // namespace tarnwick
