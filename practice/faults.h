#pragma once

#include <cstddef>
#include <filesystem>
#include <optional>
#include <set>
#include <span>
#include <string>
#include <string_view>

namespace tarnwick::practice {

/// Everything that can be ordered to go wrong. The table in faults.cpp gives each its name.
enum class Fault {
  DaemonUnreachable,
  DockerHangs,
  DockerIgnoresSigterm,
  DockerCrashes,
  DockerPrintsHelp,
  PullDiskFull,
  PullNoNetwork,
  PullManifestUnknown,
  PullHangs,
  PullFloods,
  PullInvalidUtf8,
  PullLongLine,
  ComposeMissing,
  ComposeFails,
  ComposeNameInUseOnce,
  ComposeAsks,
  ComposeHangs,
  RunFails,
  PortInUse,
  VolumeRmFails,
  LogsFlood,
  ContainerDies,
  DesktopNeverAnswers,
  DesktopAnswers500,
  DesktopSlow,
  DesktopDrips,
  DesktopRedirects,
  DesktopDigest,
  DesktopWrongPassword,
  DesktopNewCertificate,
  ColimaStartFails,
  ColimaStartHangs,
  ColimaStopFails,
  ColimaStopHangs,
  ColimaHoldsPipe,
  BrewFails,
  BrewHangs,
  BrewInstallsElsewhere,
  BrewServicesFails,
};

struct FaultEntry {
  Fault fault;
  std::string_view name;
  std::string_view effect;
};

/// Every fault with its name and what it does, in the order in which they are listed to people.
std::span<const FaultEntry> knownFaults();

std::optional<Fault> faultNamed(std::string_view name);
std::string_view nameOf(Fault fault);

/// The faults ordered now: TARNWICK_PRACTICE_FAULTS (separated by commas) and the lines of the file
/// "faults" in the state folder, together.
class Faults {
 public:
  Faults() = default;
  explicit Faults(std::set<Fault> ordered) : ordered_(std::move(ordered)) {}

  /// Throws Refusal when a name is unknown: a misspelt order must not look like a passed test.
  static Faults read(const std::filesystem::path& stateFolder);

  bool has(Fault fault) const { return ordered_.contains(fault); }
  const std::set<Fault>& all() const { return ordered_; }

 private:
  std::set<Fault> ordered_;
};

/// Adds a fault to the state folder's file or takes it out; throws Refusal when that fails.
void orderFault(const std::filesystem::path& stateFolder, Fault fault, bool on);

}  // namespace tarnwick::practice
