#include "core/engine/colima_manager.h"

#include <string>
#include <utility>
#include <vector>

namespace tarnwick {

namespace {

constexpr double reachableLimit = 10;
constexpr double stopLimit = 90;
constexpr double servicesLimit = 120;
constexpr std::int32_t notFound = -1;

CommandResult missingTool(std::string sentence) {
  return CommandResult(notFound, "", std::move(sentence), false);
}

}  // namespace

ColimaManager::ColimaManager(CommandRunner& runner, const ToolFinder& tools)
    : runner_(runner), tools_(tools) {}

Task<bool> ColimaManager::dockerReachable() {
  const auto docker = tools_.find("docker");
  if (!docker) co_return false;
  std::vector<std::string> args = {"info", "--format", "{{.ServerVersion}}"};
  Environment env;
  const CommandResult result =
      co_await runner_.run(*docker, std::move(args), reachableLimit, std::move(env));
  co_return result.succeeded();
}

Task<CommandResult> ColimaManager::stop() {
  const auto colima = tools_.find("colima");
  if (!colima) co_return missingTool("colima not found");
  std::vector<std::string> args = {"stop"};
  Environment env;
  co_return co_await runner_.run(*colima, std::move(args), stopLimit, std::move(env));
}

Task<CommandResult> ColimaManager::setStartAtLogin(bool on) {
  const auto brew = tools_.find("brew");
  if (!brew) co_return missingTool("Homebrew not found");
  std::vector<std::string> args = {"services", on ? "start" : "stop", "colima"};
  Environment env;
  co_return co_await runner_.run(*brew, std::move(args), servicesLimit, std::move(env));
}

Task<std::int32_t> ColimaManager::install(std::shared_ptr<StreamingProcess> stream,
                                          LineCallback onLine) {
  const auto brew = tools_.find("brew");
  if (!brew) co_return notFound;
  std::vector<std::string> args = {"install"};
  for (const char* tool : {"colima", "docker"}) {
    if (!tools_.find(tool)) args.emplace_back(tool);
  }
  if (args.size() == 1) co_return 0;
  Environment env;
  co_return co_await stream->run(*brew, std::move(args), std::move(env), std::move(onLine));
}

}  // namespace tarnwick
