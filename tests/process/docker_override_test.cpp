#include <array>
#include <gtest/gtest.h>
#include <sstream>
#include <sys/stat.h>
#include <thread>

#include "core/process/tools.h"
#include "tests/support/temporary_folder.h"

namespace tarnwick {
namespace {

class DockerOverrideTest : public testing::Test {
 protected:
  [[nodiscard]] Tools make() const {
    return Tools(Tools::Config::forEnvironment({{"TARNWICK_TOOL_FOLDERS", home_.path() + "/bin"},
                                                {"DOCKER_CONFIG", "/inherited"}}),
                 AppPaths(home_.path() + "/data", home_.path()));
  }
  void configure(const std::string& content) const { home_.write(".docker/config.json", content); }
  void expectNoOverride(const std::string& why) const {
    const Tools tools = make();
    EXPECT_TRUE(tools.dockerOverride().empty()) << why;
    EXPECT_EQ(tools.environment({}).at("DOCKER_CONFIG"), "/inherited") << why;
    EXPECT_FALSE(std::filesystem::exists(ownFile_)) << why;
  }
  [[nodiscard]] std::string ownContent() const {
    std::stringstream content;
    content << std::ifstream(ownFile_).rdbuf();
    return content.str();
  }
  [[nodiscard]] static mode_t modeOf(const std::string& path) {
    struct stat info {};
    return ::stat(path.c_str(), &info) == 0 ? info.st_mode & 07777 : 0;
  }

  TemporaryFolder home_;
  const std::string userFile_ = home_.path() + "/.docker/config.json";
  const std::string ownFolder_ = home_.path() + "/data/Tarnwick/docker-config";
  const std::string ownFile_ = ownFolder_ + "/config.json";
};

TEST_F(DockerOverrideTest, AMissingHelperLeadsToAConfigurationOfOurOwn) {
  configure(R"({"auths":{"r":{"auth":"c2VjcmV0"}},"credsStore":"desktop","currentContext":"x"})");
  const Tools tools = make();
  EXPECT_EQ(tools.dockerOverride(), (Environment{{"DOCKER_CONFIG", ownFolder_}}));
  EXPECT_EQ(ownContent(), R"({"auths":{},"cliPluginsExtraDirs":[)"
                          R"("/opt/homebrew/lib/docker/cli-plugins",)"
                          R"("/usr/local/lib/docker/cli-plugins"]})");
  EXPECT_EQ(modeOf(ownFile_), 0600U);
  EXPECT_EQ(modeOf(ownFolder_), 0700U);

  // It holds for this run, whatever happens to the files.
  configure("{}");
  home_.write(".colima/default/docker.sock", "");
  EXPECT_EQ(tools.environment({}).at("DOCKER_CONFIG"), ownFolder_);
  EXPECT_FALSE(tools.dockerOverride().contains("DOCKER_HOST"));
  EXPECT_EQ(tools.environment({{"DOCKER_CONFIG", "/extra"}}).at("DOCKER_CONFIG"), "/extra");
}

TEST_F(DockerOverrideTest, NamesColimasSocketWhenItIsThere) {
  configure(R"({"credsStore":"desktop"})");
  home_.write(".colima/default/docker.sock", "");
  EXPECT_EQ(make().dockerOverride().at("DOCKER_HOST"),
            "unix://" + home_.path() + "/.colima/default/docker.sock");
}

TEST_F(DockerOverrideTest, AHelperThatIsThereChangesNothing) {
  configure(R"({"credsStore":"desktop"})");
  home_.write("bin/docker-credential-desktop", "", std::filesystem::perms(0755));
  expectNoOverride("the helper is there");
}

TEST_F(DockerOverrideTest, AConfigurationThatSaysNothingChangesNothing) {
  expectNoOverride("no file");
  const std::string deep(1'000'000, '[');
  for (const std::string& content :
       {std::string(), std::string("not JSON"), std::string("[\"credsStore\"]"), std::string("{}"),
        std::string(R"({"credsStore":""})"), std::string(R"({"credsStore":5})"),
        std::string(R"({"credsStore":["desktop"]})"), std::string(R"({"credsStore":"desktop")"),
        std::string("{\"credsStore\":\"\xFF\"}"), std::string(R"({"a":{"credsStore":"desktop"}})"),
        deep, "{\"a\":" + deep}) {
    configure(content);
    expectNoOverride(content.substr(0, 40));
  }
}

TEST_F(DockerOverrideTest, WhatCannotBeReadOrIsFarTooLargeChangesNothing) {
  std::filesystem::create_directories(userFile_);
  expectNoOverride("a folder");
  std::filesystem::remove(userFile_);
  ASSERT_EQ(::mkfifo(userFile_.c_str(), 0600), 0);
  expectNoOverride("a pipe that nobody writes");
  std::filesystem::remove(userFile_);
  configure(R"({"credsStore":"desktop"})" + std::string(1000, ' '));
  std::filesystem::resize_file(userFile_, 100'000'000);
  expectNoOverride("100 MB");
}

TEST_F(DockerOverrideTest, AnEarlierConfigurationIsReplaced) {
  configure(R"({"credsStore":"desktop"})");
  home_.write("data/Tarnwick/docker-config/config.json", "old and damaged");
  EXPECT_EQ(make().dockerOverride().size(), 1U);
  EXPECT_TRUE(ownContent().starts_with(R"({"auths":{},)")) << ownContent();
}

TEST_F(DockerOverrideTest, WithoutAPlaceToWriteTheUsersConfigurationStays) {
  configure(R"({"credsStore":"desktop"})");
  home_.write("data", "a file where the folder should be");
  expectNoOverride("the folder cannot be made");
}

TEST_F(DockerOverrideTest, TwoFirstCallsAtOnceGetTheSameAnswer) {
  configure(R"({"credsStore":"desktop"})");
  const Tools tools = make();
  std::array<Environment, 4> results;
  std::vector<std::thread> threads;
  for (Environment& result : results) {
    threads.emplace_back([&tools, &result] { result = tools.environment({}); });
  }
  for (std::thread& thread : threads) thread.join();
  for (const Environment& result : results) EXPECT_EQ(result.at("DOCKER_CONFIG"), ownFolder_);
}

}  // namespace
}  // namespace tarnwick
