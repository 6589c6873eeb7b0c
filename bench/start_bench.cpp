// From the start of the process to the first picture of the window, against an empty window.

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <fmt/format.h>
#include <fstream>
#include <memory>
#include <optional>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <vector>
#include <xcb/damage.h>
#include <xcb/xcb.h>

#include "bench/private_display.h"
#include "tests/support/temporary_folder.h"

namespace tarnwick {
namespace {

using Clock = std::chrono::steady_clock;
using Milliseconds = std::chrono::duration<double, std::milli>;

constexpr int pairs = 15;
constexpr int pictureWidth = 700;  // smaller areas are not the window's first picture
constexpr int pictureHeight = 500;

struct Start {
  double milliseconds;
  double mebibytes;  ///< the process's share of memory once it has settled
};

/// Watches a display for pictures.
class Watcher {
 public:
  explicit Watcher(const std::string& display)
      : connection_(xcb_connect(display.c_str(), nullptr)) {
    const auto* extension = xcb_get_extension_data(connection_, &xcb_damage_id);
    if (extension == nullptr || !extension->present) std::abort();
    drawn_ = static_cast<std::uint8_t>(extension->first_event + XCB_DAMAGE_NOTIFY);
    std::free(xcb_damage_query_version_reply(connection_,
                                             xcb_damage_query_version(connection_, 1, 1), nullptr));
    const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(connection_)).data->root;
    xcb_damage_create(connection_, xcb_generate_id(connection_), root,
                      XCB_DAMAGE_REPORT_LEVEL_RAW_RECTANGLES);
    xcb_flush(connection_);
  }
  Watcher(const Watcher&) = delete;
  Watcher& operator=(const Watcher&) = delete;
  ~Watcher() { xcb_disconnect(connection_); }

  /// Forgets what has been drawn so far.
  void drain() {
    while (const auto event = next()) static_cast<void>(event);
  }

  /// Waits for a picture of a window's size, 20 seconds at most.
  bool waitForPicture() {
    const auto giveUp = Clock::now() + std::chrono::seconds(20);
    pollfd file{xcb_get_file_descriptor(connection_), POLLIN, 0};
    while (Clock::now() < giveUp) {
      while (const auto event = next()) {
        if ((event->response_type & 0x7FU) != drawn_) continue;
        const auto* drawn = reinterpret_cast<const xcb_damage_notify_event_t*>(event.get());
        if (drawn->area.width >= pictureWidth && drawn->area.height >= pictureHeight) return true;
      }
      ::poll(&file, 1, 100);
    }
    return false;
  }

 private:
  using Event = std::unique_ptr<xcb_generic_event_t, decltype(&std::free)>;
  Event next() { return {xcb_poll_for_event(connection_), &std::free}; }

  xcb_connection_t* connection_;
  std::uint8_t drawn_ = 0;
};

double shareOfMemory(pid_t pid) {
  std::ifstream rollup(fmt::format("/proc/{}/smaps_rollup", pid));
  for (std::string line; std::getline(rollup, line);) {
    if (line.starts_with("Pss:")) return std::stod(line.substr(4)) / 1024;
  }
  return 0;
}

std::optional<Start> measure(Watcher& watcher, const char* program) {
  std::this_thread::sleep_for(std::chrono::milliseconds(300));
  watcher.drain();
  std::string name(program);
  char* argv[] = {name.data(), nullptr};
  pid_t pid = 0;
  const auto begun = Clock::now();
  if (::posix_spawn(&pid, program, nullptr, nullptr, argv, environ) != 0) return std::nullopt;
  const bool drawn = watcher.waitForPicture();
  const Milliseconds took = Clock::now() - begun;
  std::this_thread::sleep_for(std::chrono::seconds(1));
  const double memory = shareOfMemory(pid);
  ::kill(pid, SIGKILL);
  ::waitpid(pid, nullptr, 0);
  if (!drawn) return std::nullopt;
  return Start{took.count(), memory};
}

double median(const std::vector<Start>& starts, double Start::*what) {
  std::vector<double> values;
  for (const Start& start : starts) values.push_back(start.*what);
  std::sort(values.begin(), values.end());
  return values[values.size() / 2];
}

/// Settings and data of nobody, so that every start is alike and no other one is disturbed.
void usePrivateFolders(const std::string& folder) {
  for (const char* name : {"XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME", "HOME"}) {
    ::setenv(name, folder.c_str(), 1);
  }
}

int run() {
  const TemporaryFolder folder;
  const PrivateDisplay display;
  usePrivateFolders(folder.path());
  ::setenv("DISPLAY", display.name().c_str(), 1);
  ::unsetenv("QT_LINUX_ACCESSIBILITY_ALWAYS_ON");
  Watcher watcher(display.name());
  std::vector<Start> ours;
  std::vector<Start> empty;
  for (int i = 0; i < pairs; ++i) {
    const auto floor = measure(watcher, TARNWICK_EMPTY_WINDOW);
    const auto own = measure(watcher, TARNWICK_PROGRAM);
    if (!floor || !own) {
      fmt::print("a window was never drawn\n");
      return 1;
    }
    empty.push_back(*floor);
    ours.push_back(*own);
  }
  const double floorTime = median(empty, &Start::milliseconds);
  const double ownTime = median(ours, &Start::milliseconds);
  const double floorMemory = median(empty, &Start::mebibytes);
  const double ownMemory = median(ours, &Start::mebibytes);
  fmt::print("start ({} pairs, medians)      empty window      Tarnwick\n", pairs);
  fmt::print("first picture                {:9.1f} ms {:10.1f} ms   {:.2f}x\n", floorTime, ownTime,
             ownTime / floorTime);
  fmt::print("memory                      {:9.1f} MiB {:9.1f} MiB   {:.2f}x\n", floorMemory,
             ownMemory, ownMemory / floorMemory);
  fmt::print("first picture after that of an empty window: {:.1f} ms, at most 60 {}\n",
             ownTime - floorTime, ownTime - floorTime <= 60 ? "met" : "MISSED");
  return 0;
}

}  // namespace
}  // namespace tarnwick

int main() {
  return tarnwick::run();
}
