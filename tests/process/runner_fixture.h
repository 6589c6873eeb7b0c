#pragma once

#include <chrono>
#include <gtest/gtest.h>
#include <string>

#include "core/async/task_scope.h"
#include "core/async/worker_queue.h"
#include "core/process/tools.h"
#include "tests/support/temporary_folder.h"
#include "tests/support/virtual_main_thread.h"

namespace tarnwick {

/// What the runners need, with a home of its own and an inherited environment of two variables.
class RunnerFixture : public testing::Test {
 protected:
  static Tools::Config config() {
    return Tools::Config::forEnvironment({{"INHERITED", "yes"}, {"PATH", "/elsewhere"}});
  }

  /// Seconds since the fixture was made.
  [[nodiscard]] double elapsed() const {
    return std::chrono::duration<double>(Clock::now() - begin_).count();
  }

  const std::string tool_ = TARNWICK_TEST_TOOL;
  TemporaryFolder home_;
  Tools tools_{config(), AppPaths(home_.path() + "/data", home_.path())};
  VirtualMainThread mainThread_;
  ThreadPool workers_;
  TaskScope scope_{mainThread_};

 private:
  const TimePoint begin_ = Clock::now();
};

}  // namespace tarnwick
