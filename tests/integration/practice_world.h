#pragma once

#include <cstdlib>
#include <fstream>
#include <string>
#include <sys/wait.h>
#include <unistd.h>

#include "core/controller/desktop_controller.h"
#include "core/process/cli.h"
#include "core/process/tool_stream.h"
#include "core/process/tools.h"
#include "platform/curl_http_probe.h"
#include "platform/json_key_value_store.h"
#include "platform/system_random.h"
#include "tests/support/loop_main_thread.h"
#include "tests/support/memory_login_item.h"
#include "tests/support/memory_secret_service.h"
#include "tests/support/recording_workspace.h"
#include "tests/support/temporary_folder.h"

namespace tarnwick {

/// The controller on the real runners and the practice tools, in folders of its own, in real time
/// without the tools' pauses.
class PracticeWorld {
 public:
  enum class Installed { everything, homebrewOnly };

  explicit PracticeWorld(Installed installed = Installed::everything)
      : tools(toolConfig(installed), paths) {
    const auto [http, https] = PortCheck::freePair(25'000 + 10 * (::getpid() % 1'000));
    controller.settings.httpPort = http;
    controller.settings.httpsPort = https;
  }
  PracticeWorld(const PracticeWorld&) = delete;
  PracticeWorld& operator=(const PracticeWorld&) = delete;
  ~PracticeWorld() {
    orderFaults("");
    docker({"practice", "reset"});
  }

  /// Orders the faults with these names, one a line, and no others.
  void orderFaults(const std::string& names) const {
    std::ofstream(folder.path() + "/state/faults") << names << "\n";
  }

  /// Runs the practice docker and waits for it.
  CommandResult docker(const std::vector<std::string>& args) {
    return cli.runSync(std::string(PRACTICE_FOLDER) + "/bin/docker", args, 20, {});
  }

  /// Presses the main button and waits until the run has ended, 60 seconds at most.
  bool launch() {
    controller.primary();
    return waitUntilSettled();
  }
  bool waitUntilSettled() {
    return mainThread.runUntil(
        [this] { return controller.phase.get() != Phase::busy && !controller.isStopping.get(); },
        std::chrono::seconds(60));
  }

  Tools::Config toolConfig(Installed installed) const {
    std::filesystem::create_directory(folder.path() + "/state");
    Environment inherited{{"TARNWICK_PRACTICE_STATE", folder.path() + "/state"},
                          {"TARNWICK_PRACTICE_PACE", "0"},
                          {"TARNWICK_PRACTICE_FLOOD_MB", "50"}};
    std::string toolFolder = std::string(PRACTICE_FOLDER) + "/bin";
    if (installed == Installed::homebrewOnly) {
      toolFolder = folder.path() + "/tools";
      std::filesystem::create_directory(toolFolder);
      std::filesystem::create_symlink(std::string(PRACTICE_FOLDER) + "/tarnwick-practice",
                                      toolFolder + "/brew");
    }
    inherited["TARNWICK_TOOL_FOLDERS"] = toolFolder;
    return Tools::Config::forEnvironment(inherited);
  }

  TemporaryFolder folder;
  AppPaths paths{folder.path(), folder.path()};
  LoopMainThread mainThread;
  Tools tools;
  ThreadPool workers;
  CLI cli{tools, workers, mainThread};
  JsonKeyValueStore store{folder.path() + "/settings.json", [](const std::string&) {}};
  MemorySecretService secrets;
  MemoryLoginItem loginItem;
  SystemRandom random;
  CurlHttpProbe httpProbe;
  RecordingWorkspace workspace;
  DesktopController controller{ControllerServices{
      mainThread, workers, cli, tools, ToolStream::factory(tools, workers, mainThread), store,
      secrets, loginItem, random, httpProbe, workspace, paths, "registry.test"}};
};

}  // namespace tarnwick
