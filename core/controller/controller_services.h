#pragma once

#include <string>

#include "core/async/main_thread.h"
#include "core/async/worker_queue.h"
#include "core/controller/http_probe.h"
#include "core/controller/workspace.h"
#include "core/process/command_runner.h"
#include "core/process/streaming_process.h"
#include "core/process/tool_finder.h"
#include "core/settings/app_paths.h"
#include "core/settings/key_value_store.h"
#include "core/settings/login_item.h"
#include "core/settings/random_source.h"
#include "core/settings/secret_service.h"

namespace tarnwick {

/// What the controller works with. Everything referred to outlives the controller.
struct ControllerServices {
  MainThread& mainThread;
  WorkerQueue& workers;
  CommandRunner& runner;
  const ToolFinder& tools;
  StreamingProcessFactory makeStream;
  KeyValueStore& store;
  SecretService& secrets;
  LoginItem& loginItem;
  RandomSource& random;
  HttpProbe& httpProbe;
  Workspace& workspace;
  const AppPaths& paths;
  std::string imageRegistry;  ///< host that the images come from, without a scheme
};

}  // namespace tarnwick
