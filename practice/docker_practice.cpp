#include <fmt/format.h>

#include "practice/console.h"
#include "practice/container.h"
#include "practice/refusal.h"
#include "practice/tool.h"

namespace tarnwick::practice {
namespace {

int status(const Call& call) {
  const State state = call.folder.load();
  say(fmt::format("Folder:    {}", call.folder.path().string()));
  say(fmt::format("Engine:    {}", state.engineUp ? "up" : "down"));
  for (const std::string& image : state.images) say(fmt::format("Image:     {}", image));
  if (state.container) {
    const ContainerRequest& request = state.container->request;
    say(fmt::format("Container: {} {}, http {}, https {}, volume {}", request.name,
                    isRunning(state) ? "running" : "stopped", request.httpPort, request.httpsPort,
                    request.volume));
  }
  const Faults ordered = Faults::read(call.folder.path());
  for (Fault fault : ordered.all()) {
    say(fmt::format("Fault:     {}", nameOf(fault)));
  }
  return 0;
}

int faults() {
  for (const FaultEntry& entry : knownFaults())
    say(fmt::format("{:<26} {}", entry.name, entry.effect));
  return 0;
}

int order(const Call& call, const std::string& name, bool on) {
  const std::optional<Fault> fault = faultNamed(name);
  if (!fault)
    throw Refusal(64, fmt::format("Practice engine: there is no fault named \"{}\".", name));
  call.folder.update([&](State& state) {
    orderFault(call.folder.path(), *fault, on);
    state.spentFaults.erase(name);
  });
  return 0;
}

int resetFaults(const Call& call) {
  call.folder.update([&](State& state) {
    std::filesystem::remove(call.folder.path() / "faults");
    state.spentFaults.clear();
  });
  return 0;
}

int reset(const Call& call) {
  try {
    call.folder.update([](State& state) { removeContainer(state); });
  } catch (const Refusal&) {
    // A damaged state is what a reset is for; a server that it named ends by itself.
  }
  call.folder.erase();
  return 0;
}

}  // namespace

int runPractice(const Call& call, Words rest) {
  if (rest.size() == 1 && rest[0] == "status") return status(call);
  if (rest.size() == 1 && rest[0] == "faults") return faults();
  if (rest.size() == 1 && rest[0] == "reset") return reset(call);
  if (rest.size() == 2 && rest[0] == "fault" && rest[1] == "reset") return resetFaults(call);
  if (rest.size() == 3 && rest[0] == "fault" && (rest[2] == "on" || rest[2] == "off")) {
    return order(call, rest[1], rest[2] == "on");
  }
  throw Refusal(
      64, "Usage:  docker practice status | faults | fault NAME on|off | fault reset | reset");
}

}  // namespace tarnwick::practice
