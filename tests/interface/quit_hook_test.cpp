#include "app/quit_hook.h"

#include <fstream>
#include <gtest/gtest.h>
#include <sstream>
#include <sys/stat.h>

#include "core/settings/settings_store.h"
#include "tests/support/memory_key_value_store.h"
#include "tests/support/temporary_folder.h"
#include "tests/support/virtual_main_thread.h"

namespace tarnwick {
namespace {

class QuitHook : public testing::Test {
 protected:
  /// A colima that writes down what it was asked.
  void installColima() {
    const std::string path = folder.path() + "/colima";
    std::ofstream(path) << "#!/bin/sh\necho \"$@\" >> '" << folder.path() << "/calls'\nexit 1\n";
    chmod(path.c_str(), 0755);
  }
  void quit() {
    Tools::Config config;
    config.toolFolders = {folder.path()};
    config.systemFolders = {"/usr/bin", "/bin"};
    const Tools tools(config, AppPaths(folder.path(), folder.path()));
    const CLI cli(tools, workers, mainThread);
    stopColimaIfWanted(store, tools, cli);
  }
  [[nodiscard]] std::string calls() const {
    std::ostringstream text;
    text << std::ifstream(folder.path() + "/calls").rdbuf();
    return text.str();
  }

  TemporaryFolder folder;
  MemoryKeyValueStore store;
  VirtualMainThread mainThread;
  ThreadPool workers;
};

TEST_F(QuitHook, StopsColimaOnceWhenTheUserWantsIt) {
  installColima();
  quit();
  EXPECT_EQ(calls(), "") << "an absent key means no";
  store.setBoolean("stopColimaOnQuit", true);
  quit();
  EXPECT_EQ(calls(), "stop\n") << "and its failure is silent";
}

TEST_F(QuitHook, WithoutColimaDoesNothing) {
  store.setBoolean("stopColimaOnQuit", true);
  quit();
  EXPECT_EQ(calls(), "");
}

}  // namespace
}  // namespace tarnwick
