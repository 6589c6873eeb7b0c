#pragma once

#include <optional>
#include <string>
#include <vector>

#include "core/async/main_thread.h"
#include "core/async/task.h"
#include "core/async/worker_queue.h"
#include "core/engine/docker.h"
#include "core/engine/launch_config.h"
#include "core/process/command_runner.h"
#include "core/settings/app_paths.h"

namespace tarnwick {

/// Brings the desktop's container up, by docker compose where there is one, else by a plain run.
/// Main thread; cannot be cancelled.
class ContainerStarter {
 public:
  ContainerStarter(CommandRunner& runner, Docker& docker, const AppPaths& paths,
                   WorkerQueue& workers, MainThread& mainThread);

  /// `docker` is the tool's full path, `env` the extra environment of the commands that create the
  /// container, `recreate` forces a new container. None on success, else a text that is not empty:
  /// raw tool output or a sentence.
  Task<std::optional<std::string>> startContainer(std::string docker, LaunchConfig config,
                                                  Environment env, bool recreate);

 private:
  Task<std::optional<std::string>> composeUp(std::string docker, ComposeInvocation invocation,
                                             LaunchConfig config, Environment env, bool recreate);
  Task<std::optional<std::string>> plainRun(std::string docker, LaunchConfig config,
                                            Environment env, bool recreate);
  Task<std::optional<std::string>> writeComposeFile(std::string path, LaunchConfig config);
  Task<void> removeContainer(std::string docker);

  CommandRunner& runner_;
  Docker& docker_;
  const AppPaths& paths_;
  WorkerQueue& workers_;
  MainThread& mainThread_;
};

}  // namespace tarnwick
