#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <set>
#include <string>
#include <sys/types.h>
#include <vector>

namespace tarnwick::practice {

/// What a container was created from: two requests that are equal need no new container.
/// `environment` holds "NAME=value" entries, and bare names for what comes from the caller's
/// environment: values of those are kept nowhere.
struct ContainerRequest {
  std::string name;
  std::string image;
  std::string project;  ///< compose project, empty for a plain run
  std::string volume;
  std::string sharePath;
  int httpPort = 0;
  int httpsPort = 0;
  std::vector<std::string> environment;

  bool operator==(const ContainerRequest&) const = default;
};

struct Container {
  std::string id;  ///< 64 hexadecimal digits
  ContainerRequest request;
  bool wanted = false;  ///< started and not stopped by the user: comes back with the engine
  bool locked = false;  ///< came back without its password; nobody can sign in until the next start
  pid_t serverPid = 0;
  std::uint64_t serverStart = 0;  ///< start time of that pid, which tells a reused pid apart
};

struct State {
  bool engineUp = false;
  int cpu = 2;
  int memory = 2;
  int disk = 100;
  std::string mount;
  std::set<std::string> images;
  std::optional<Container> container;
  std::set<std::string> spentFaults;  ///< faults that strike once, and have
  bool startsAtLogin = false;
};

/// The folder that holds everything the stand-ins remember. Reading takes no lock, since the state
/// file is only ever replaced as a whole; changes go through update(), one process at a time.
class StateFolder {
 public:
  /// TARNWICK_PRACTICE_STATE, else "tarnwick-practice" in the user's data folder. Creates it,
  /// readable by the user alone. Throws Refusal when that fails.
  static StateFolder open();

  const std::filesystem::path& path() const { return path_; }
  std::filesystem::path volume(const std::string& name) const { return path_ / "volumes" / name; }
  std::filesystem::path containerLog() const { return path_ / "container.log"; }

  /// The state now; the engine is down after a reboot of the machine, as the real one is.
  /// Throws Refusal when the file is damaged.
  State load() const;

  /// Loads, changes and saves under an exclusive lock. A Refusal thrown by `change` leaves the
  /// saved state as it was.
  void update(const std::function<void(State&)>& change) const;

  /// Forgets everything: state, volumes, images, faults, log. Takes the lock; the folder stays.
  void erase() const;

 private:
  explicit StateFolder(std::filesystem::path path) : path_(std::move(path)) {}
  void save(const State& state) const;

  std::filesystem::path path_;
};

}  // namespace tarnwick::practice
