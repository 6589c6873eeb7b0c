#include "core/process/docker_override.h"

#include <nlohmann/json.hpp>
#include <optional>
#include <sys/stat.h>
#include <unistd.h>

#include "core/files/atomic_file.h"
#include "core/files/read_file.h"

namespace tarnwick {
namespace {

using nlohmann::json;

/// Real ones have a few kilobytes.
constexpr std::size_t largestConfiguration = 16 * 1024 * 1024;

/// The helper that the configuration at `path` names for all registries, or none.
std::optional<std::string> credentialHelper(const std::string& path) {
  const FileContent file = readFile(path, largestConfiguration);
  if (file.state != FileState::read) return std::nullopt;

  // Only the members of the top level are kept: the rest is of no use here, may hold logins, and
  // could be nested without end.
  const json::parser_callback_t topLevelOnly = [](int depth, json::parse_event_t event, json&) {
    const bool opens =
        event == json::parse_event_t::object_start || event == json::parse_event_t::array_start;
    return depth == 0 || !opens;
  };
  const json root = json::parse(file.bytes, topLevelOnly, false);
  if (!root.is_object()) return std::nullopt;
  const auto member = root.find("credsStore");
  if (member == root.end() || !member->is_string()) return std::nullopt;
  std::string name = member->get<std::string>();
  if (name.empty()) return std::nullopt;
  return name;
}

std::string privateConfiguration(const std::vector<std::string>& pluginFolders) {
  const json root = {{"auths", json::object()}, {"cliPluginsExtraDirs", pluginFolders}};
  return root.dump(-1, ' ', false, json::error_handler_t::replace);
}

}  // namespace

Environment makeDockerOverride(const ToolFinder& tools,
                               const std::vector<std::string>& pluginFolders,
                               const AppPaths& paths) {
  const auto helper = credentialHelper(paths.homeFolder() + "/.docker/config.json");
  if (!helper || tools.find("docker-credential-" + *helper)) return {};

  const std::string folder = paths.supportDir() + "/docker-config";
  ::mkdir(folder.c_str(), 0700);
  const std::string content = privateConfiguration(pluginFolders);
  if (writeFileAtomically(folder + "/config.json", content, 0600)) return {};

  Environment result{{"DOCKER_CONFIG", folder}};
  const std::string socket = paths.homeFolder() + "/.colima/default/docker.sock";
  if (::access(socket.c_str(), F_OK) == 0) result.emplace("DOCKER_HOST", "unix://" + socket);
  return result;
}

}  // namespace tarnwick
