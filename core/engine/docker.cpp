#include "core/engine/docker.h"

#include <algorithm>

#include "core/engine/text.h"

namespace tarnwick {

namespace {

constexpr double answerLimit = 10;
constexpr double logsLimit = 15;

Task<CommandResult> ask(CommandRunner& runner, std::string docker, std::vector<std::string> args,
                        double timeout) {
  return runner.run(std::move(docker), std::move(args), timeout, Environment());
}

}  // namespace

std::optional<ContainerInfo> parseContainerInfo(const std::string& output) {
  const std::string_view line = trimmed(output);
  const std::size_t separator = line.find('|');
  if (std::ranges::count(line, '|') != 1) return std::nullopt;
  return ContainerInfo(line.substr(0, separator) == "true",
                       std::string(line.substr(separator + 1)));
}

Docker::Docker(CommandRunner& runner, const ToolFinder& tools) : runner_(runner), tools_(tools) {}

Task<bool> Docker::imageExists(std::string image) {
  const auto docker = tools_.find("docker");
  if (!docker) co_return false;
  std::vector<std::string> args = {"image", "inspect"};
  args.push_back(std::move(image));
  const CommandResult result = co_await ask(runner_, *docker, std::move(args), answerLimit);
  co_return result.succeeded();
}

Task<std::optional<ContainerInfo>> Docker::containerInfo() {
  const auto docker = tools_.find("docker");
  if (!docker) co_return std::nullopt;
  std::vector<std::string> args = {"inspect", "-f", "{{.State.Running}}|{{.Config.Image}}",
                                   containerName};
  const CommandResult result = co_await ask(runner_, *docker, std::move(args), answerLimit);
  if (!result.succeeded()) co_return std::nullopt;
  co_return parseContainerInfo(result.out);
}

Task<std::optional<ComposeInvocation>> Docker::composeInvocation() {
  const auto docker = tools_.find("docker");
  if (!docker) co_return std::nullopt;
  std::vector<std::string> args = {"compose", "version"};
  const CommandResult result = co_await ask(runner_, *docker, std::move(args), answerLimit);
  std::vector<std::string> prefix;
  if (result.succeeded()) {
    prefix.emplace_back("compose");
    co_return ComposeInvocation(*docker, std::move(prefix));
  }
  const auto standalone = tools_.find("docker-compose");
  if (!standalone) co_return std::nullopt;
  co_return ComposeInvocation(*standalone, std::move(prefix));
}

Task<std::string> Docker::logs(int tail) {
  const auto docker = tools_.find("docker");
  if (!docker) co_return "Docker is not installed.";
  std::vector<std::string> args = {"logs", "--tail"};
  args.push_back(std::to_string(tail));
  args.emplace_back(containerName);
  const CommandResult result = co_await ask(runner_, *docker, std::move(args), logsLimit);
  std::string text = result.combined();
  if (!text.empty()) co_return text;
  if (result.succeeded()) co_return "(no output yet)";
  co_return "Could not read logs (is the desktop created yet?)";
}

}  // namespace tarnwick
