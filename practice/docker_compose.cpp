#include <fcntl.h>
#include <fmt/format.h>
#include <fstream>
#include <iterator>
#include <unistd.h>

#include "practice/compose_file.h"
#include "practice/console.h"
#include "practice/container.h"
#include "practice/refusal.h"
#include "practice/tool.h"

namespace tarnwick::practice {
namespace {

struct UpOptions {
  std::string project;
  std::string file;
  bool recreate = false;
};

[[noreturn]] void refuse(std::string_view message) {
  throw Refusal(1, fmt::format("{}\n\nUsage:  docker compose -p PROJECT -f FILE up -d "
                               "[--force-recreate]",
                               message));
}

UpOptions readArguments(Words rest) {
  UpOptions options;
  bool up = false;
  bool detached = false;
  while (!rest.empty()) {
    const std::string& word = rest[0];
    rest = rest.subspan(1);
    if (!up && (word == "-p" || word == "-f")) {
      if (rest.empty()) refuse(fmt::format("flag needs an argument: '{}'", word.substr(1)));
      (word == "-p" ? options.project : options.file) = rest[0];
      rest = rest.subspan(1);
    } else if (!up && word == "up") {
      up = true;
    } else if (up && word == "-d") {
      detached = true;
    } else if (up && word == "--force-recreate") {
      options.recreate = true;
    } else {
      refuse(fmt::format("unknown {}: {}", word.starts_with('-') ? "flag" : "command", word));
    }
  }
  if (!up || !detached || options.file.empty())
    refuse("Practice engine: -f FILE up -d is expected.");
  return options;
}

std::string readFile(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  std::string text{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
  if (!file) throw Refusal(1, fmt::format("open {}: no such file or directory", path));
  return text;
}

void ask() {
  const int terminal = ::open("/dev/tty", O_RDWR | O_CLOEXEC);
  const std::string_view question =
      "Volume exists but was not created by this project. Use it? [y/N] ";
  char answer = 'n';
  if (terminal < 0) {
    complain(question);
    if (::read(STDIN_FILENO, &answer, 1) < 1) answer = 'n';
  } else {
    if (::write(terminal, question.data(), question.size()) < 0) answer = 'n';
    if (::read(terminal, &answer, 1) < 1) answer = 'n';
    ::close(terminal);
  }
  if (answer != 'y' && answer != 'Y') throw Refusal(1, "canceled");
}

std::string conflict(const State& state) {
  const std::string id = state.container ? state.container->id : std::string(64, '0');
  return fmt::format(
      "Error response from daemon: Conflict. The container name \"/{}\" is already in "
      "use by container \"{}\". You have to remove (or rename) that container to be "
      "able to reuse that name.",
      kContainerName, id);
}

void strikeEarly(const Call& call) {
  if (call.faults.has(Fault::ComposeAsks)) ask();
  if (call.faults.has(Fault::ComposeHangs)) {
    hang(call.folder.path());
    throw Refusal(1, "context deadline exceeded");
  }
  if (call.faults.has(Fault::ComposeFails)) {
    throw Refusal(1,
                  "Error response from daemon: failed to create task for container: OCI runtime "
                  "create failed: unable to start container process");
  }
  if (!call.faults.has(Fault::ComposeNameInUseOnce)) return;
  const std::string name(nameOf(Fault::ComposeNameInUseOnce));
  std::string message;
  call.folder.update([&](State& state) {
    if (state.spentFaults.insert(name).second) message = conflict(state);
  });
  if (!message.empty()) throw Refusal(1, message);
}

void bringUp(const Call& call, State& state, const ContainerRequest& request, bool recreate) {
  const ContainerHost host{call.folder, call.faults, 1};
  const auto report = [&](std::string_view step) {
    complain(fmt::format(" Container {}  {}", request.name, step));
  };
  if (state.container && state.container->request.project != request.project) {
    throw Refusal(1, conflict(state));
  }
  if (state.container && !recreate && host.runsAsAsked(state, request)) return report("Running");
  const bool same = state.container && !recreate && state.container->request == request;
  if (same && !isRunning(state)) {
    report("Starting");
    host.start(state);
    return report("Started");
  }
  report(state.container ? "Recreate" : "Creating");
  const bool existed = state.container.has_value();
  removeContainer(state);
  host.create(state, request);
  report(existed ? "Recreated" : "Created");
  report("Starting");
  report("Started");
}

int up(const Call& call, Words rest) {
  const UpOptions options = readArguments(rest);
  const ContainerRequest request = readComposeFile(readFile(options.file), options.project);
  if (request.name != kContainerName) refuse("Practice engine: the container is named tarnwick.");
  requireDaemon(call);
  strikeEarly(call);
  if (!call.folder.load().images.contains(request.image)) {
    complain(fmt::format(" {} Pulling ", request.name));
    pullImage(call, request.image);
    complain(fmt::format(" {} Pulled ", request.name));
  }
  if (!std::filesystem::exists(call.folder.volume(request.volume))) {
    complain(fmt::format(" Volume \"{}\"  Creating", request.volume));
    complain(fmt::format(" Volume \"{}\"  Created", request.volume));
  }
  pauseFor(0.6);
  call.folder.update([&](State& state) { bringUp(call, state, request, options.recreate); });
  return 0;
}

}  // namespace

int runCompose(const Call& call, Words rest) {
  if (call.faults.has(Fault::ComposeMissing)) {
    throw Refusal(1,
                  "docker: unknown command: docker compose\n\n"
                  "Run 'docker --help' for more information");
  }
  if (rest.size() == 1 && rest[0] == "version") {
    say(fmt::format("Docker Compose version v{}", kComposeVersion));
    return 0;
  }
  return up(call, rest);
}

}  // namespace tarnwick::practice
