#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "practice/faults.h"
#include "practice/state.h"

namespace tarnwick::practice {

/// What every stand-in works with: the arguments after its name, its folder and the ordered faults.
struct Call {
  std::vector<std::string> arguments;
  std::string calledAs;  ///< the path that this program was started by
  const StateFolder& folder;
  Faults faults;
};

/// Each returns the exit status or throws Refusal.
int runDocker(const Call& call);
int runColima(const Call& call);
int runBrew(const Call& call);

// The docker commands that have files of their own. `rest` is what follows the command's words.
using Words = std::span<const std::string>;
void pullImage(const Call& call, const std::string& reference);
int runContainer(const Call& call, Words rest);
int runCompose(const Call& call, Words rest);
int runPractice(const Call& call, Words rest);

/// Throws the client's refusal, with `status`, when the daemon cannot be reached.
void requireDaemon(const Call& call, int status = 1);

inline constexpr std::string_view kContainerName = "tarnwick";
inline constexpr std::string_view kDockerVersion = "28.2.2";
inline constexpr std::string_view kComposeVersion = "2.39.4";
inline constexpr std::string_view kColimaVersion = "0.8.4";

}  // namespace tarnwick::practice
