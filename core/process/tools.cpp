#include "core/process/tools.h"

#include <algorithm>
#include <string_view>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

#include "core/process/docker_override.h"

namespace tarnwick {
namespace {

std::vector<std::string> absoluteFolders(std::string_view list) {
  std::vector<std::string> folders;
  while (!list.empty()) {
    const std::string_view folder = list.substr(0, list.find(':'));
    list.remove_prefix(std::min(list.size(), folder.size() + 1));
    if (folder.starts_with('/')) folders.emplace_back(folder);
  }
  return folders;
}

Environment environmentOfThisProcess() {
  Environment environment;
  for (char** entry = environ; entry != nullptr && *entry != nullptr; ++entry) {
    const std::string_view text(*entry);
    const std::size_t equals = text.find('=');
    if (equals == 0 || equals == std::string_view::npos) continue;
    environment.insert_or_assign(std::string(text.substr(0, equals)),
                                 std::string(text.substr(equals + 1)));
  }
  return environment;
}

bool isExecutableFile(const std::string& path) {
  struct stat info {};
  return ::stat(path.c_str(), &info) == 0 && S_ISREG(info.st_mode) &&
         ::access(path.c_str(), X_OK) == 0;
}

std::string searchPathOf(const Tools::Config& config) {
  std::string path;
  for (const auto* folders : {&config.toolFolders, &config.systemFolders}) {
    for (const std::string& folder : *folders) {
      if (!path.empty()) path += ':';
      path += folder;
    }
  }
  return path;
}

}  // namespace

Tools::Config Tools::Config::forEnvironment(Environment inherited) {
  Config config;
  const auto chosen = inherited.find("TARNWICK_TOOL_FOLDERS");
  if (chosen != inherited.end()) config.toolFolders = absoluteFolders(chosen->second);
  if (config.toolFolders.empty()) {
    config.toolFolders = {"/opt/homebrew/bin", "/usr/local/bin",
                          "/Applications/Docker.app/Contents/Resources/bin"};
  }
  config.systemFolders = {"/usr/bin", "/bin", "/usr/sbin", "/sbin"};
  config.pluginFolders = {"/opt/homebrew/lib/docker/cli-plugins",
                          "/usr/local/lib/docker/cli-plugins"};
  config.inherited = std::move(inherited);
  return config;
}

Tools::Config Tools::Config::fromProcess() {
  return forEnvironment(environmentOfThisProcess());
}

Tools::Tools(Config config, AppPaths paths)
    : config_(std::move(config)), paths_(std::move(paths)), searchPath_(searchPathOf(config_)) {}

std::optional<std::string> Tools::find(const std::string& name) const {
  // A name from a configuration file must not lead out of the tool folders.
  if (name.empty() || name.find('/') != std::string::npos || name.find('\0') != std::string::npos) {
    return std::nullopt;
  }
  for (const std::string& folder : config_.toolFolders) {
    std::string path = folder + "/" + name;
    if (isExecutableFile(path)) return path;
  }
  return std::nullopt;
}

const Environment& Tools::environment() const {
  std::call_once(environmentOnce_, [this] {
    environment_ = config_.inherited;
    environment_.insert_or_assign("PATH", searchPath_);
    environment_.insert_or_assign("HOMEBREW_NO_ENV_HINTS", std::string("1"));
    for (const auto& [name, value] : dockerOverride()) environment_.insert_or_assign(name, value);
  });
  return environment_;
}

Environment Tools::environment(const Environment& extra) const {
  Environment result = environment();
  for (const auto& [name, value] : extra) result.insert_or_assign(name, value);
  return result;
}

const Environment& Tools::dockerOverride() const {
  std::call_once(overrideOnce_,
                 [this] { override_ = makeDockerOverride(*this, config_.pluginFolders, paths_); });
  return override_;
}

}  // namespace tarnwick
