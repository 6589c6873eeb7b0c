// The user's docker configuration, which may hold anything. The first line says whether there is a
// socket; the rest is the file. One credential helper is installed, named "here".
#include <cstdint>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>

#include "core/process/tools.h"
#include "core/settings/app_paths.h"
#include "support/input.h"
#include "support/require.h"
#include "support/scratch_folder.h"

using namespace tarnwick;
using fuzz::require;
using nlohmann::json;

namespace {

constexpr const char* userFile = ".docker/config.json";
constexpr const char* ownFile = "data/Tarnwick/docker-config/config.json";
constexpr const char* socketFile = ".colima/default/docker.sock";

const fuzz::ScratchFolder& home() {
  static const fuzz::ScratchFolder folder;
  static const bool prepared = [] {
    folder.write("bin/docker-credential-here", "");
    std::filesystem::permissions(folder / "bin/docker-credential-here",
                                 std::filesystem::perms(0755));
    return true;
  }();
  require(prepared, "the helper is installed");
  return folder;
}

Tools toolsOf(const fuzz::ScratchFolder& folder) {
  Tools::Config config;
  config.toolFolders = {folder / "bin"};
  config.pluginFolders = {"/plugins/one", "/plugins/two"};
  config.inherited = {{"DOCKER_CONFIG", "/inherited"}};
  return {config, AppPaths(folder / "data", folder / "")};
}

/// Whether the configuration names a helper that is not installed, read in the plainest way.
bool namesMissingHelper(std::string_view bytes) {
  const json root = json::parse(bytes, nullptr, false);
  if (!root.is_object() || !root.contains("credsStore")) return false;
  const json& helper = root.at("credsStore");
  return helper.is_string() && helper != "" && helper != "here";
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::Input input(data, size);
  const bool hasSocket = input.line() == "socket";
  const std::string configuration(input.rest());
  const fuzz::ScratchFolder& folder = home();
  folder.remove("data");
  folder.remove(socketFile);
  folder.write(userFile, configuration);
  if (hasSocket) folder.write(socketFile, "");

  const Tools tools = toolsOf(folder);
  const Environment result = tools.dockerOverride();
  require(folder.read(userFile) == configuration, "the user's file stays as it is");
  require(result.empty() == !namesMissingHelper(configuration),
          "a missing helper, and nothing else, makes a configuration of our own");
  if (result.empty()) {
    require(!folder.exists("data/Tarnwick/docker-config"), "what is not needed is not written");
    require(tools.environment().at("DOCKER_CONFIG") == "/inherited", "the user's choice stays");
    return 0;
  }
  const json own = json::parse(folder.read(ownFile), nullptr, false);
  const json expected = {{"auths", json::object()},
                         {"cliPluginsExtraDirs", {"/plugins/one", "/plugins/two"}}};
  require(own == expected, "nothing of the user's file is taken over");
  require(folder.isPrivate(ownFile), "the file is the user's alone");
  require(folder.entries("data/Tarnwick/docker-config") == 1, "nothing else is left there");
  require(result.at("DOCKER_CONFIG") == folder / "data/Tarnwick/docker-config",
          "docker is led to our configuration");
  require(result.contains("DOCKER_HOST") == hasSocket, "the socket is named when there is one");
  return 0;
}
