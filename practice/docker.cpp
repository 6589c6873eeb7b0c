#include <charconv>
#include <cstdlib>
#include <deque>
#include <fmt/format.h>
#include <fstream>
#include <signal.h>
#include <sys/resource.h>

#include "practice/console.h"
#include "practice/container.h"
#include "practice/refusal.h"
#include "practice/tool.h"

namespace tarnwick::practice {
namespace {

constexpr std::string_view kHelp =
    "Usage:  docker [OPTIONS] COMMAND\n"
    "\n"
    "The practice engine's stand-in: what Tarnwick asks of docker, and nothing else\n"
    "\n"
    "Commands:\n"
    "  compose     up -d, version\n"
    "  image       inspect IMAGE\n"
    "  info        Tell about the engine\n"
    "  inspect     -f '{{.State.Running}}|{{.Config.Image}}' CONTAINER\n"
    "  logs        Show what the container has written\n"
    "  practice    status, faults, fault NAME on|off, fault reset, reset\n"
    "  pull        Pretend to download an image\n"
    "  rm          -f CONTAINER\n"
    "  run         -d IMAGE\n"
    "  stop        Stop the container\n"
    "  version     Show the versions\n"
    "  volume      rm VOLUME";

[[noreturn]] void refuseUsage(std::string_view message, std::string_view command) {
  throw Refusal(1,
                fmt::format("{}\n\nRun 'docker {} --help' for more information", message, command));
}

const std::string& onlyArgument(Words rest, std::string_view command) {
  if (rest.size() != 1) {
    refuseUsage(fmt::format("docker: 'docker {}' requires 1 argument", command), command);
  }
  if (rest[0].starts_with('-')) refuseUsage(fmt::format("unknown flag: {}", rest[0]), command);
  return rest[0];
}

int info(const Call& call, Words rest) {
  constexpr std::string_view kFormat = "{{.ServerVersion}}";
  const bool formatted = rest.size() == 2 && rest[0] == "--format" && rest[1] == kFormat;
  if (!rest.empty() && !formatted)
    refuseUsage("docker info: only --format {{.ServerVersion}}", "info");
  requireDaemon(call);
  say(formatted ? std::string(kDockerVersion)
                : fmt::format("{}\nServer Version: {}", kLabel, kDockerVersion));
  return 0;
}

int imageInspect(const Call& call, Words rest) {
  const std::string& reference = onlyArgument(rest, "image inspect");
  requireDaemon(call);
  if (!call.folder.load().images.contains(reference)) {
    say("[]");
    throw Refusal(1, fmt::format("Error response from daemon: No such image: {}", reference));
  }
  say(fmt::format("[{{\"RepoTags\": [\"{}\"]}}]", reference));
  return 0;
}

int inspect(const Call& call, Words rest) {
  if (rest.size() != 3 || (rest[0] != "-f" && rest[0] != "--format") ||
      rest[1] != "{{.State.Running}}|{{.Config.Image}}") {
    refuseUsage("docker inspect: only -f '{{.State.Running}}|{{.Config.Image}}'", "inspect");
  }
  requireDaemon(call);
  const State state = call.folder.load();
  if (rest[2] != kContainerName || !state.container) {
    say("");
    throw Refusal(1, fmt::format("Error: No such object: {}", rest[2]));
  }
  say(fmt::format("{}|{}", isRunning(state), state.container->request.image));
  return 0;
}

int stop(const Call& call, Words rest) {
  const std::string& name = onlyArgument(rest, "stop");
  requireDaemon(call);
  call.folder.update([&](State& state) {
    if (name != kContainerName || !state.container) {
      throw Refusal(1, fmt::format("Error response from daemon: No such container: {}", name));
    }
    stopContainer(state);
  });
  pauseFor(0.4);
  say(name);
  return 0;
}

int remove(const Call& call, Words rest) {
  const bool force = !rest.empty() && (rest[0] == "-f" || rest[0] == "--force");
  const std::string& name = onlyArgument(force ? rest.subspan(1) : rest, "rm");
  requireDaemon(call);
  call.folder.update([&](State& state) {
    if (name != kContainerName || !state.container) {
      // Forced removal of nothing is a message, but no failure.
      throw Refusal(force ? 0 : 1,
                    fmt::format("Error response from daemon: No such container: {}", name));
    }
    if (!force && isRunning(state)) {
      throw Refusal(1, fmt::format("Error response from daemon: cannot remove container \"/{}\": "
                                   "container is running: stop the container before removing or "
                                   "force remove",
                                   name));
    }
    removeContainer(state);
  });
  say(name);
  return 0;
}

int removeVolume(const Call& call, Words rest) {
  const std::string& name = onlyArgument(rest, "volume rm");
  requireDaemon(call);
  call.folder.update([&](State& state) {
    const auto volume = call.folder.volume(name);
    const bool plain = name.find('/') == std::string::npos && !name.starts_with('.');
    if (!plain || !std::filesystem::is_directory(volume)) {
      throw Refusal(1, fmt::format("Error: No such volume: {}", name));
    }
    if (state.container && state.container->request.volume == name) {
      throw Refusal(1, fmt::format("Error response from daemon: remove {}: volume is in use - [{}]",
                                   name, state.container->id));
    }
    std::error_code error;
    if (!call.faults.has(Fault::VolumeRmFails)) std::filesystem::remove_all(volume, error);
    if (error || call.faults.has(Fault::VolumeRmFails)) {
      throw Refusal(
          1, fmt::format("Error response from daemon: remove {}: device or resource busy", name));
    }
  });
  say(name);
  return 0;
}

void floodLogs() {
  std::string block;
  while (block.size() < 1'000'000) {
    block += "Practice desktop: this line is repeated until the log holds 1 GB.\n";
  }
  flood(block);
}

int logs(const Call& call, Words rest) {
  std::size_t tail = std::string::npos;
  if (rest.size() == 3 && rest[0] == "--tail") {
    const char* end = rest[1].data() + rest[1].size();
    if (std::from_chars(rest[1].data(), end, tail).ptr != end) {
      refuseUsage(fmt::format("Error response from daemon: invalid tail: {}", rest[1]), "logs");
    }
    rest = rest.subspan(2);
  }
  const std::string& name = onlyArgument(rest, "logs");
  requireDaemon(call);
  if (name != kContainerName || !call.folder.load().container) {
    throw Refusal(1, fmt::format("Error response from daemon: No such container: {}", name));
  }
  if (call.faults.has(Fault::LogsFlood)) floodLogs();
  std::ifstream file(call.folder.containerLog());
  std::deque<std::string> lines;
  for (std::string line; std::getline(file, line);) {
    lines.push_back(line);
    if (lines.size() > tail) lines.pop_front();
  }
  for (const std::string& line : lines) say(line);
  return 0;
}

int version(const Call& call) {
  say(fmt::format("Client: practice engine\n Version:           {}", kDockerVersion));
  requireDaemon(call);
  say(fmt::format("\nServer: practice engine\n Version:          {}", kDockerVersion));
  return 0;
}

void strike(const Call& call, bool asksComposeVersion) {
  if (call.faults.has(Fault::DockerIgnoresSigterm)) ::signal(SIGTERM, SIG_IGN);
  if (call.faults.has(Fault::DockerCrashes)) {
    const rlimit none{0, 0};
    ::setrlimit(RLIMIT_CORE, &none);
    ::signal(SIGABRT, SIG_DFL);
    ::raise(SIGABRT);
  }
  if (call.faults.has(Fault::DockerPrintsHelp)) {
    say(kHelp);
    throw Refusal(0, "");
  }
  if (call.faults.has(Fault::DockerHangs) && !asksComposeVersion) {
    hang(call.folder.path());
    throw Refusal(1, "context deadline exceeded");
  }
}

bool starts(Words words, std::initializer_list<std::string_view> beginning) {
  return words.size() >= beginning.size() &&
         std::equal(beginning.begin(), beginning.end(), words.begin());
}

}  // namespace

void requireDaemon(const Call& call, int status) {
  if (call.folder.load().engineUp && !call.faults.has(Fault::DaemonUnreachable)) return;
  const char* home = std::getenv("HOME");
  throw Refusal(status, fmt::format("Cannot connect to the Docker daemon at "
                                    "unix://{}/.colima/default/docker.sock. Is the docker daemon "
                                    "running?",
                                    home == nullptr ? "" : home));
}

int runDocker(const Call& call) {
  const Words words(call.arguments);
  if (starts(words, {"practice"})) return runPractice(call, words.subspan(1));
  strike(call, starts(words, {"compose", "version"}));
  if (starts(words, {"info"})) return info(call, words.subspan(1));
  if (starts(words, {"image", "inspect"})) return imageInspect(call, words.subspan(2));
  if (starts(words, {"inspect"})) return inspect(call, words.subspan(1));
  if (starts(words, {"pull"})) {
    const std::string& reference = onlyArgument(words.subspan(1), "pull");
    requireDaemon(call);
    pullImage(call, reference);
    return 0;
  }
  if (starts(words, {"run"})) return runContainer(call, words.subspan(1));
  if (starts(words, {"compose"})) return runCompose(call, words.subspan(1));
  if (starts(words, {"stop"})) return stop(call, words.subspan(1));
  if (starts(words, {"rm"})) return remove(call, words.subspan(1));
  if (starts(words, {"volume", "rm"})) return removeVolume(call, words.subspan(2));
  if (starts(words, {"logs"})) return logs(call, words.subspan(1));
  if (starts(words, {"version"})) return version(call);
  if (starts(words, {"--version"})) {
    say(fmt::format("Docker version {}, build practice", kDockerVersion));
    return 0;
  }
  if (words.empty() || words[0] == "--help" || words[0] == "help") {
    say(kHelp);
    return 0;
  }
  if (words[0].starts_with('-')) {
    throw Refusal(125, fmt::format("unknown flag: {}\nSee 'docker --help'.", words[0]));
  }
  throw Refusal(1, fmt::format("docker: unknown command: docker {}\n\n"
                               "Run 'docker --help' for more information",
                               words[0]));
}

}  // namespace tarnwick::practice
