#include "practice/faults.h"

#include <array>
#include <cstdlib>
#include <fmt/format.h>
#include <fstream>

#include "practice/refusal.h"

namespace tarnwick::practice {
namespace {

constexpr std::array kFaults = {
    FaultEntry{Fault::DaemonUnreachable, "daemon-unreachable",
               "docker cannot connect to its daemon, even while colima runs"},
    FaultEntry{Fault::DockerHangs, "docker-hangs",
               "no docker command answers, except compose version"},
    FaultEntry{Fault::DockerIgnoresSigterm, "docker-ignores-sigterm",
               "docker ignores SIGTERM (order docker-hangs or pull-hangs as well to see it)"},
    FaultEntry{Fault::DockerCrashes, "docker-crashes", "every docker command dies by a signal"},
    FaultEntry{Fault::DockerPrintsHelp, "docker-prints-help",
               "every docker command prints the whole help on standard output, with status 0"},
    FaultEntry{Fault::PullDiskFull, "pull-disk-full", "a pull runs out of disk while unpacking"},
    FaultEntry{Fault::PullNoNetwork, "pull-no-network", "a pull cannot resolve the registry"},
    FaultEntry{Fault::PullManifestUnknown, "pull-manifest-unknown",
               "the registry does not know the tag"},
    FaultEntry{Fault::PullHangs, "pull-hangs", "a pull stands still after a few layers"},
    FaultEntry{Fault::PullFloods, "pull-floods",
               "a pull prints 1 GB of lines as fast as it can, then succeeds"},
    FaultEntry{Fault::PullInvalidUtf8, "pull-invalid-utf8",
               "a pull prints bytes that are not UTF-8, then succeeds"},
    FaultEntry{Fault::PullLongLine, "pull-long-line",
               "a pull prints 50 MB without a line end, then succeeds"},
    FaultEntry{Fault::ComposeMissing, "compose-missing", "docker has no compose plug-in"},
    FaultEntry{Fault::ComposeFails, "compose-fails", "compose up fails"},
    FaultEntry{Fault::ComposeNameInUseOnce, "compose-name-in-use-once",
               "the first compose up finds the container's name taken"},
    FaultEntry{Fault::ComposeAsks, "compose-asks",
               "compose up asks a question on the terminal and waits for the answer"},
    FaultEntry{Fault::ComposeHangs, "compose-hangs", "compose up never ends"},
    FaultEntry{Fault::RunFails, "run-fails", "docker run fails"},
    FaultEntry{Fault::PortInUse, "port-in-use",
               "run and compose up report that a port is already allocated"},
    FaultEntry{Fault::VolumeRmFails, "volume-rm-fails", "docker volume rm fails"},
    FaultEntry{Fault::LogsFlood, "logs-flood", "docker logs prints 1 GB of lines"},
    FaultEntry{Fault::ContainerDies, "container-dies",
               "the container ends by itself 2 seconds after its start"},
    FaultEntry{Fault::DesktopNeverAnswers, "desktop-never-answers",
               "the desktop accepts connections and never replies"},
    FaultEntry{Fault::DesktopAnswers500, "desktop-answers-500",
               "the desktop answers everything with status 500"},
    FaultEntry{Fault::DesktopSlow, "desktop-slow", "the desktop needs 60 seconds to start"},
    FaultEntry{Fault::DesktopDrips, "desktop-drips", "the desktop sends its page a byte a second"},
    FaultEntry{Fault::DesktopRedirects, "desktop-redirects",
               "the desktop redirects every request to another address of itself"},
    FaultEntry{Fault::DesktopDigest, "desktop-digest",
               "the desktop asks for Digest sign-in and accepts nobody"},
    FaultEntry{Fault::DesktopWrongPassword, "desktop-wrong-password",
               "the desktop refuses every user name and password"},
    FaultEntry{Fault::DesktopNewCertificate, "desktop-new-certificate",
               "the desktop makes a new certificate at each start"},
    FaultEntry{Fault::ColimaStartFails, "colima-start-fails", "colima start fails"},
    FaultEntry{Fault::ColimaStartHangs, "colima-start-hangs", "colima start never ends"},
    FaultEntry{Fault::ColimaStopFails, "colima-stop-fails", "colima stop fails"},
    FaultEntry{Fault::ColimaStopHangs, "colima-stop-hangs", "colima stop never ends"},
    FaultEntry{Fault::ColimaHoldsPipe, "colima-holds-pipe",
               "colima start leaves a process that holds its output pipe for an hour"},
    FaultEntry{Fault::BrewFails, "brew-fails", "brew install fails"},
    FaultEntry{Fault::BrewHangs, "brew-hangs", "brew install never ends"},
    FaultEntry{Fault::BrewInstallsElsewhere, "brew-installs-elsewhere",
               "brew install succeeds, into a folder where nobody looks"},
    FaultEntry{Fault::BrewServicesFails, "brew-services-fails", "brew services fails"},
};

std::filesystem::path faultFile(const std::filesystem::path& stateFolder) {
  return stateFolder / "faults";
}

void add(std::set<Fault>& ordered, std::string name) {
  const auto first = name.find_first_not_of(" \t\r");
  if (first == std::string::npos) return;
  name = name.substr(first, name.find_last_not_of(" \t\r") - first + 1);
  const std::optional<Fault> fault = faultNamed(name);
  if (!fault) {
    throw Refusal(64, fmt::format("Practice engine: there is no fault named \"{}\". "
                                  "\"docker practice faults\" lists them.",
                                  name));
  }
  ordered.insert(*fault);
}

void readFile(std::set<Fault>& ordered, const std::filesystem::path& stateFolder) {
  std::ifstream file(faultFile(stateFolder));
  for (std::string line; std::getline(file, line);) add(ordered, line);
}

}  // namespace

std::span<const FaultEntry> knownFaults() {
  return kFaults;
}

std::optional<Fault> faultNamed(std::string_view name) {
  for (const FaultEntry& entry : kFaults) {
    if (entry.name == name) return entry.fault;
  }
  return std::nullopt;
}

std::string_view nameOf(Fault fault) {
  for (const FaultEntry& entry : kFaults) {
    if (entry.fault == fault) return entry.name;
  }
  return {};
}

Faults Faults::read(const std::filesystem::path& stateFolder) {
  std::set<Fault> ordered;
  const char* text = std::getenv("TARNWICK_PRACTICE_FAULTS");
  std::string_view names = text == nullptr ? std::string_view() : std::string_view(text);
  while (!names.empty()) {
    const std::size_t comma = std::min(names.find(','), names.size());
    add(ordered, std::string(names.substr(0, comma)));
    names.remove_prefix(std::min(comma + 1, names.size()));
  }
  readFile(ordered, stateFolder);
  return Faults(std::move(ordered));
}

void orderFault(const std::filesystem::path& stateFolder, Fault fault, bool on) {
  std::set<Fault> ordered;
  readFile(ordered, stateFolder);
  if (on) {
    ordered.insert(fault);
  } else {
    ordered.erase(fault);
  }
  std::filesystem::path temporary = faultFile(stateFolder);
  temporary += ".new";
  std::ofstream file(temporary);
  for (Fault each : ordered) file << nameOf(each) << '\n';
  file.close();
  std::error_code error;
  std::filesystem::rename(temporary, faultFile(stateFolder), error);
  if (!file || error) throw Refusal(1, "Practice engine: the list of faults could not be written.");
}

}  // namespace tarnwick::practice
