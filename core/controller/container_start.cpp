#include "core/controller/container_start.h"

#include <utility>

#include "core/controller/friendly.h"
#include "core/engine/compose_file.h"
#include "core/files/atomic_file.h"
#include "core/files/read_file.h"

namespace tarnwick {
namespace {

std::optional<std::string> outputOr(const CommandResult& result, const char* fallback) {
  std::string output = result.combined();
  return output.empty() ? std::string(fallback) : std::move(output);
}

std::vector<std::string> composeArguments(const ComposeInvocation& invocation,
                                          const std::string& file, bool recreate) {
  std::vector<std::string> args = invocation.prefix;
  args.insert(args.end(), {"-p", containerName, "-f", file, "up", "-d"});
  if (recreate) args.emplace_back("--force-recreate");
  return args;
}

}  // namespace

ContainerStarter::ContainerStarter(CommandRunner& runner, Docker& docker, const AppPaths& paths,
                                   WorkerQueue& workers, MainThread& mainThread)
    : runner_(runner), docker_(docker), paths_(paths), workers_(workers), mainThread_(mainThread) {}

Task<std::optional<std::string>> ContainerStarter::startContainer(std::string docker,
                                                                  LaunchConfig config,
                                                                  Environment env, bool recreate) {
  const std::optional<ComposeInvocation> invocation = co_await docker_.composeInvocation();
  if (!invocation) {
    co_return co_await plainRun(docker, config, env, recreate);
  }
  co_return co_await composeUp(docker, *invocation, config, env, recreate);
}

Task<std::optional<std::string>> ContainerStarter::composeUp(std::string docker,
                                                             ComposeInvocation invocation,
                                                             LaunchConfig config, Environment env,
                                                             bool recreate) {
  const std::string file = paths_.supportDir() + "/compose-" + config.flavor.id + ".yml";
  std::optional<std::string> problem = co_await writeComposeFile(file, config);
  if (problem) co_return "Could not write the compose file: " + *problem;

  const std::vector<std::string> args = composeArguments(invocation, file, recreate);
  CommandResult result = co_await runner_.run(invocation.exe, args, 180, env);
  if (result.succeeded()) co_return std::nullopt;

  if (lowerCased(result.combined()).find("already in use") != std::string::npos) {
    co_await removeContainer(docker);
    CommandResult second = co_await runner_.run(invocation.exe, args, 180, env);
    if (second.succeeded()) co_return std::nullopt;
    co_return outputOr(second, "docker compose failed.");
  }
  co_return outputOr(result, "docker compose failed.");
}

Task<std::optional<std::string>> ContainerStarter::plainRun(std::string docker, LaunchConfig config,
                                                            Environment env, bool recreate) {
  const std::optional<ContainerInfo> info = co_await docker_.containerInfo();
  if (info) {
    const bool isOurs = info->image == imageReference(config.registryHost, config.flavor);
    if (info->running && !recreate && isOurs) co_return std::nullopt;
    co_await removeContainer(docker);
  }
  const std::vector<std::string> args = ComposeFile::runArguments(config);
  CommandResult result = co_await runner_.run(docker, args, 120, env);
  if (result.succeeded()) co_return std::nullopt;
  co_return outputOr(result, "docker run failed.");
}

// The disk may be slow; the main thread does not wait for it.
Task<std::optional<std::string>> ContainerStarter::writeComposeFile(std::string path,
                                                                    LaunchConfig config) {
  std::function<std::optional<std::string>()> write = [path, text = ComposeFile::yaml(config)]() {
    // Most starts find the file of the start before, and leave the disk in peace.
    if (readFile(path, text.size()).bytes == text) return std::optional<std::string>();
    return writeFileAtomically(path, text, 0600);
  };
  co_return co_await onWorker<std::optional<std::string>>(workers_, mainThread_, std::move(write));
}

// Whether there was something to remove is told by the command that follows.
Task<void> ContainerStarter::removeContainer(std::string docker) {
  const std::vector<std::string> args{"rm", "-f", containerName};
  const Environment env;
  const CommandResult ignored = co_await runner_.run(docker, args, 60, env);
}

}  // namespace tarnwick
