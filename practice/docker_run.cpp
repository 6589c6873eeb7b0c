#include <fmt/format.h>
#include <set>

#include "practice/compose_file.h"
#include "practice/console.h"
#include "practice/container.h"
#include "practice/refusal.h"
#include "practice/tool.h"

namespace tarnwick::practice {
namespace {

constexpr int kStatus = 125;

[[noreturn]] void refuse(std::string_view message) {
  throw Refusal(kStatus, fmt::format("{}\n\nUsage:  docker run [OPTIONS] IMAGE\n\n"
                                     "Run 'docker run --help' for more information",
                                     message));
}

ContainerRequest readArguments(Words rest) {
  ContainerRequest request;
  bool detached = false;
  while (!rest.empty()) {
    const std::string word = rest[0];
    rest = rest.subspan(1);
    if (word == "-d") {
      detached = true;
      continue;
    }
    if (!word.starts_with('-')) {
      if (!rest.empty()) refuse("Practice engine: nothing may follow the image.");
      request.image = word;
      break;
    }
    static const std::set<std::string> known = {"--name", "--restart", "--shm-size",
                                                "-p",     "-e",        "-v"};
    if (!known.contains(word)) refuse(fmt::format("unknown flag: {}", word));
    if (rest.empty()) refuse(fmt::format("flag needs an argument: {}", word));
    const std::string& value = rest[0];
    rest = rest.subspan(1);
    if (word == "--name") request.name = value;
    if (word == "-p") publishPort(request, value, kStatus);
    if (word == "-e") addEnvironment(request, value);
    if (word == "-v") mountVolume(request, value, kStatus);
  }
  if (request.image.empty()) refuse("docker: 'docker run' requires at least 1 argument");
  if (!detached || request.name != kContainerName) {
    refuse("Practice engine: only -d and --name tarnwick are known.");
  }
  return request;
}

}  // namespace

int runContainer(const Call& call, Words rest) {
  const ContainerRequest request = readArguments(rest);
  requireDaemon(call, kStatus);
  if (!call.folder.load().images.contains(request.image)) {
    complain(fmt::format("Unable to find image '{}' locally", request.image));
    pullImage(call, request.image);
  }
  pauseFor(0.6);
  std::string id;
  call.folder.update([&](State& state) {
    if (state.container) {
      throw Refusal(kStatus,
                    fmt::format("docker: Error response from daemon: Conflict. The container "
                                "name \"/{}\" is already in use by container \"{}\". You "
                                "have to remove (or rename) that container to be able to "
                                "reuse that name.",
                                request.name, state.container->id));
    }
    if (call.faults.has(Fault::RunFails)) {
      throw Refusal(kStatus,
                    "docker: Error response from daemon: failed to create task for container: OCI "
                    "runtime create failed: unable to start container process");
    }
    ContainerHost{call.folder, call.faults, kStatus}.create(state, request);
    id = state.container->id;
  });
  say(id);
  return 0;
}

}  // namespace tarnwick::practice
