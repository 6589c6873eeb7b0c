#pragma once

#include <filesystem>
#include <string>

#include "core/controller/desktop_controller.h"
#include "tests/support/counting_random_source.h"
#include "tests/support/fake_command_runner.h"
#include "tests/support/fake_streaming_process.h"
#include "tests/support/fake_tool_finder.h"
#include "tests/support/memory_key_value_store.h"
#include "tests/support/memory_login_item.h"
#include "tests/support/memory_secret_service.h"
#include "tests/support/recording_workspace.h"
#include "tests/support/scripted_http_probe.h"
#include "tests/support/temporary_folder.h"
#include "tests/support/virtual_main_thread.h"
#include "tests/support/virtual_worker_queue.h"

namespace tarnwick {

/// A controller on virtual time, in a world where everything works: docker answers, the image is
/// there, compose brings the container up, the page answers. Tests break what they are about.
class ControllerHarness {
 public:
  ControllerHarness() {
    using Fake = FakeCommandRunner;
    runner.on({"docker", "info"}, Fake::success("27.0\n"));
    runner.on({"docker", "image", "inspect"}, Fake::success("[]"));
    runner.on({"docker", "inspect"}, Duration(), [this](const Fake::Call&) {
      if (container.empty()) return Fake::failure("Error: No such object: tarnwick");
      return Fake::success((containerRuns ? "true|" : "false|") + container + "\n");
    });
    runner.on({"docker", "compose", "version"}, Fake::success("v2.39.4\n"));
    runner.on({"docker", "compose", "-p"}, Duration(), [this](const Fake::Call&) {
      container = image;
      containerRuns = true;
      return Fake::success();
    });
    runner.on({"docker", "stop"}, Duration(), [this](const Fake::Call&) {
      containerRuns = false;
      return Fake::success("tarnwick\n");
    });
    runner.on({"docker", "rm"}, Duration(), [this](const Fake::Call&) {
      container.clear();
      containerRuns = false;
      return Fake::success("tarnwick\n");
    });
    runner.on({"docker", "logs"}, Fake::success("container says hello\n"));
    runner.on({"colima", "stop"}, Fake::success());
  }

  /// Lets the run that was started go on to its end (an hour of virtual time at most).
  bool runToEnd() {
    return mainThread.runUntil([this] { return controller.phase.get() != Phase::busy; });
  }

  static constexpr const char* image = "registry.test/linuxserver/webtop:latest";

  VirtualMainThread mainThread;
  VirtualWorkerQueue workers{mainThread};
  FakeCommandRunner runner{mainThread};
  FakeToolFinder tools;
  StreamScript streams;
  MemoryKeyValueStore store;
  MemorySecretService secrets;
  MemoryLoginItem loginItem;
  CountingRandomSource random;
  ScriptedHttpProbe httpProbe;
  RecordingWorkspace workspace;
  TemporaryFolder folder;
  AppPaths paths{folder.path(), folder.path()};

  std::string container;  ///< image of the container; empty when there is none
  bool containerRuns = false;

  DesktopController controller{ControllerServices{
      mainThread, workers, runner, tools, FakeStreamingProcess::factory(mainThread, streams), store,
      secrets, loginItem, random, httpProbe, workspace, paths, "registry.test"}};
};

}  // namespace tarnwick
