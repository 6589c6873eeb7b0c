#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "core/async/task.h"
#include "core/process/command_runner.h"
#include "core/process/tool_finder.h"

namespace tarnwick {

/// The name of the one desktop container, its compose project and service.
inline constexpr const char* containerName = "tarnwick";

class ContainerInfo {
 public:
  ContainerInfo(bool isRunning, std::string itsImage)
      : running(isRunning), image(std::move(itsImage)) {}
  bool running;
  std::string image;  ///< the reference the container was created from, as docker prints it
};

/// How compose commands are run: the executable and the arguments that come first.
class ComposeInvocation {
 public:
  ComposeInvocation(std::string itsExe, std::vector<std::string> itsPrefix)
      : exe(std::move(itsExe)), prefix(std::move(itsPrefix)) {}
  std::string exe;
  std::vector<std::string> prefix;
};

/// Reads what `docker inspect` printed for the container; none for anything unexpected.
[[nodiscard]] std::optional<ContainerInfo> parseContainerInfo(const std::string& output);

/// Read-only questions to docker. None fails: each failure, a time-out too, is one of the answers.
/// Calls may overlap. Main thread.
class Docker {
 public:
  Docker(CommandRunner& runner, const ToolFinder& tools);

  Task<bool> imageExists(std::string image);
  /// None when there is no container or docker does not answer.
  Task<std::optional<ContainerInfo>> containerInfo();
  /// None when neither form of compose is there.
  Task<std::optional<ComposeInvocation>> composeInvocation();
  /// The container's last `tail` log lines, or a sentence; always text to show.
  Task<std::string> logs(int tail);

 private:
  CommandRunner& runner_;
  const ToolFinder& tools_;
};

}  // namespace tarnwick
