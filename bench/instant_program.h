#pragma once

#include <filesystem>
#include <string>

#include "core/controller/desktop_controller.h"
#include "core/process/cli.h"
#include "core/process/tool_stream.h"
#include "platform/curl_http_probe.h"
#include "tests/support/counting_random_source.h"
#include "tests/support/memory_key_value_store.h"
#include "tests/support/memory_login_item.h"
#include "tests/support/memory_secret_service.h"
#include "tests/support/recording_workspace.h"
#include "tests/support/temporary_folder.h"

namespace tarnwick {

/// The controller on the real runners, with a docker and a colima that answer at once. `Loop` is
/// the main thread's class.
template <typename Loop>
struct InstantProgram {
  Tools::Config config() const {
    Tools::Config result = Tools::Config::fromProcess();
    result.toolFolders = {folder.path()};
    for (const char* name : {"/docker", "/colima"}) {
      std::filesystem::create_symlink(TARNWICK_BENCH_TOOL, folder.path() + name);
    }
    return result;
  }

  TemporaryFolder folder;
  AppPaths paths{folder.path(), folder.path()};
  Tools tools{config(), paths};
  Loop mainThread;
  ThreadPool workers;
  CLI cli{tools, workers, mainThread};
  MemoryKeyValueStore store;
  MemorySecretService secrets;
  MemoryLoginItem loginItem;
  CountingRandomSource random;
  CurlHttpProbe probe;
  RecordingWorkspace workspace;
  DesktopController controller{ControllerServices{
      mainThread, workers, cli, tools, ToolStream::factory(tools, workers, mainThread), store,
      secrets, loginItem, random, probe, workspace, paths, "registry.test"}};
};

}  // namespace tarnwick
