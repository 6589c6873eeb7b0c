#include "practice/state.h"

#include <cstdlib>
#include <fcntl.h>
#include <fmt/format.h>
#include <fstream>
#include <nlohmann/json.hpp>
#include <pwd.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include "practice/refusal.h"

namespace tarnwick::practice {

NLOHMANN_DEFINE_TYPE_NON_INTRUSIVE(ContainerRequest, name, image, project, volume, sharePath,
                                   httpPort, httpsPort, environment)
NLOHMANN_DEFINE_TYPE_NON_INTRUSIVE(Container, id, request, wanted, locked, serverPid, serverStart)

namespace {

using nlohmann::json;
namespace fs = std::filesystem;

std::string bootId() {
  std::ifstream file("/proc/sys/kernel/random/boot_id");
  std::string id;
  std::getline(file, id);
  return id;
}

fs::path dataFolder() {
  if (const char* data = std::getenv("XDG_DATA_HOME"); data != nullptr && *data == '/') return data;
  if (const char* home = std::getenv("HOME"); home != nullptr && *home == '/') {
    return fs::path(home) / ".local" / "share";
  }
  const passwd* user = ::getpwuid(::getuid());
  if (user == nullptr) throw Refusal(1, "Practice engine: there is no home folder.");
  return fs::path(user->pw_dir) / ".local" / "share";
}

/// Held from construction to the end of the object; released by the kernel if the process dies.
class Lock {
 public:
  explicit Lock(const fs::path& file)
      : descriptor_(::open(file.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600)) {
    int result = -1;
    do {
      result = descriptor_ < 0 ? -1 : ::flock(descriptor_, LOCK_EX);
    } while (result != 0 && descriptor_ >= 0 && errno == EINTR);
    if (result != 0) {
      if (descriptor_ >= 0) ::close(descriptor_);
      throw Refusal(1, "Practice engine: its state folder cannot be locked.");
    }
  }
  ~Lock() { ::close(descriptor_); }
  Lock(const Lock&) = delete;
  Lock& operator=(const Lock&) = delete;

 private:
  int descriptor_;
};

}  // namespace

StateFolder StateFolder::open() {
  const char* chosen = std::getenv("TARNWICK_PRACTICE_STATE");
  const fs::path path = chosen != nullptr && *chosen != '\0' ? fs::absolute(chosen)
                                                             : dataFolder() / "tarnwick-practice";
  std::error_code error;
  if (fs::create_directories(path / "volumes", error)) ::chmod(path.c_str(), 0700);
  if (error) {
    throw Refusal(1, fmt::format("Practice engine: its folder {} cannot be used: {}", path.string(),
                                 error.message()));
  }
  return StateFolder(path);
}

State StateFolder::load() const {
  State state;
  std::ifstream file(path_ / "state.json");
  if (!file) return state;
  try {
    const json root = json::parse(file);
    state.engineUp = root.at("engineUp").get<bool>() && root.at("bootId") == bootId();
    root.at("cpu").get_to(state.cpu);
    root.at("memory").get_to(state.memory);
    root.at("disk").get_to(state.disk);
    root.at("mount").get_to(state.mount);
    root.at("images").get_to(state.images);
    root.at("spentFaults").get_to(state.spentFaults);
    root.at("startsAtLogin").get_to(state.startsAtLogin);
    if (root.contains("container")) state.container = root.at("container").get<Container>();
  } catch (const json::exception&) {
    throw Refusal(1, fmt::format("Practice engine: {} is damaged. \"docker practice reset\" begins "
                                 "anew.",
                                 (path_ / "state.json").string()));
  }
  return state;
}

void StateFolder::save(const State& state) const {
  json root = {{"engineUp", state.engineUp},
               {"bootId", bootId()},
               {"cpu", state.cpu},
               {"memory", state.memory},
               {"disk", state.disk},
               {"mount", state.mount},
               {"images", state.images},
               {"spentFaults", state.spentFaults},
               {"startsAtLogin", state.startsAtLogin}};
  if (state.container) root["container"] = *state.container;
  const fs::path temporary = path_ / "state.json.new";
  std::ofstream file(temporary);
  file << root.dump(2, ' ', false, json::error_handler_t::replace) << '\n';
  file.close();
  std::error_code error;
  if (file) fs::rename(temporary, path_ / "state.json", error);
  if (!file || error) throw Refusal(1, "Practice engine: its state could not be written.");
}

void StateFolder::update(const std::function<void(State&)>& change) const {
  const Lock lock(path_ / "lock");
  State state = load();
  change(state);
  save(state);
}

void StateFolder::erase() const {
  const Lock lock(path_ / "lock");
  std::error_code error;
  // The lock file stays: whoever waits for it must find the same one.
  for (const char* name :
       {"state.json", "state.json.new", "volumes", "faults", "container.log", "elsewhere"}) {
    fs::remove_all(path_ / name, error);
    if (error) throw Refusal(1, "Practice engine: its folder could not be emptied.");
  }
}

}  // namespace tarnwick::practice
