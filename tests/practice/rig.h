#pragma once

#include <chrono>
#include <filesystem>
#include <gtest/gtest.h>
#include <httplib.h>
#include <map>
#include <optional>
#include <string>
#include <sys/types.h>
#include <vector>

namespace tarnwick::practice::test {

using Words = std::vector<std::string>;
using Environment = std::map<std::string, std::string>;

struct Outcome {
  int status = 0;  ///< exit status, or minus the signal that ended the process
  std::string out;
  std::string err;
};

inline constexpr const char* kImage = "lscr.io/linuxserver/webtop:latest";
inline constexpr const char* kVolume = "tarnwick-config-alpine-xfce";
inline constexpr const char* kInspectFormat = "{{.State.Running}}|{{.Config.Image}}";

/// The three tools in a folder of their own, with state of their own, without pauses. Everything
/// that a test leaves running ends with it.
class Rig : public testing::Test {
 protected:
  Rig();
  ~Rig() override;

  /// Runs a tool to its end; a tool that needs more than 20 seconds is killed and shows as
  /// signal 9.
  Outcome run(const std::string& tool, const Words& arguments, const Environment& extra = {}) const;
  Outcome docker(const Words& arguments, const Environment& extra = {}) const {
    return run("docker", arguments, extra);
  }

  /// Descriptors for a child's output; negative ones mean the null device.
  struct Outputs {
    int out = -1;
    int err = -1;
  };
  pid_t start(const std::string& tool, const Words& arguments, const Environment& extra,
              Outputs outputs) const;
  pid_t start(const std::string& tool, const Words& arguments,
              const Environment& extra = {}) const {
    return start(tool, arguments, extra, Outputs{-1, -1});
  }

  /// What start() began: its end within `limit`, or none.
  static std::optional<int> ended(pid_t pid, std::chrono::milliseconds limit);

  void startEngine() const;
  Outcome up(const Environment& extra = {}, const Words& more = {}) const;
  Words runArguments(const std::string& image = kImage) const;
  bool running() const;

  /// The status of GET /, asked again until the desktop answers at all; 0 after 5 seconds.
  int statusOfPage(const std::string& user = {}, const std::string& password = {}) const;
  httplib::Client client() const;
  pid_t serverPid() const;

  /// The compose file of the default flavor with this rig's ports; with the password's names on
  /// wish.
  std::filesystem::path composeFile(bool passwordProtected) const;

  std::filesystem::path folder_;
  std::filesystem::path tools_;
  std::filesystem::path state_;
  int httpPort_ = 0;
  int httpsPort_ = 0;
};

std::string readFile(const std::filesystem::path& path);
std::vector<std::string> linesOf(const std::string& text);

}  // namespace tarnwick::practice::test
