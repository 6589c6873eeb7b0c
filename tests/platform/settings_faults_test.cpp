#include <cstdlib>
#include <fcntl.h>
#include <gmock/gmock.h>
#include <sys/wait.h>
#include <unistd.h>

#include "platform/json_key_value_store.h"
#include "tests/platform/small_files.h"
#include "tests/support/temporary_folder.h"

namespace tarnwick {
namespace {

using ::testing::ElementsAre;

constexpr int mostCalls = 100;

/// Runs the command with its output in `log` and gives its wait status.
int runTool(std::vector<std::string> words, const std::string& log) {
  const pid_t child = ::fork();
  if (child == 0) {
    const int file = ::open(log.c_str(), O_CREAT | O_TRUNC | O_WRONLY, 0600);
    ::dup2(file, 1);
    ::dup2(file, 2);
    std::vector<char*> arguments;
    for (std::string& word : words) arguments.push_back(word.data());
    arguments.push_back(nullptr);
    ::execvp(arguments[0], arguments.data());
    ::_exit(127);
  }
  int status = 0;
  ::waitpid(child, &status, 0);
  return status;
}

class SettingsFaults : public ::testing::Test {
 protected:
  void SetUp() override {
    if (runTool({"strace", "-e", "trace=none", "true"}, scratch / "log") != 0)
      GTEST_SKIP() << "strace is not installed or may not trace here";
  }

  /// Writes "new" over "old" while the Nth such call meets the fault; false when there was no Nth.
  bool writeWithFault(const std::string& call, const std::string& fault, int which) {
    writeText(file, R"({"value": "old"})");
    const std::string inject = "inject=" + call + ":" + fault + ":when=" + std::to_string(which);
    // The leak check of a sanitized build cannot run in a traced program.
    status = runTool({"strace", "-f", "-y", "-E", "ASAN_OPTIONS=detect_leaks=0", "-e", inject,
                      TARNWICK_SETTINGS_WRITER, file, "new"},
                     scratch / "log");
    const std::string log = readText(scratch / "log");
    const std::size_t mark = log.find("INJECTED");
    const std::size_t line = log.rfind('\n', mark) + 1;
    hitOurs = log.substr(line, mark - line).find(folder.path()) != std::string::npos;
    return mark != std::string::npos || WIFSIGNALED(status);
  }

  std::string valueNow() {
    std::string problem;
    const JsonKeyValueStore store(file, [&](const std::string& text) { problem = text; });
    return store.string("value").value_or("lost: " + problem);
  }

  TemporaryFolder folder;
  TemporaryFolder scratch;
  std::string file = folder / "settings.json";
  int status = 0;
  bool hitOurs = false;  ///< the call was about the settings; sanitizers make calls of their own
};

TEST_F(SettingsFaults, AFailingCallLeavesTheOldFileOrTheNewOneAndIsTold) {
  for (const std::string call : {"write", "fsync", "rename", "fchmod"}) {
    int fired = 0;
    for (const std::string fault : {"error=ENOSPC", "error=EIO"}) {
      for (int which = 1; which < mostCalls; ++which) {
        if (!writeWithFault(call, fault, which)) break;
        if (!hitOurs) continue;
        ++fired;
        EXPECT_THAT(valueNow(), ::testing::AnyOf("old", "new")) << call << which;
        EXPECT_EQ(WEXITSTATUS(status), 3) << call << " " << which << " went untold";
        EXPECT_THAT(namesIn(folder.path()), ElementsAre("settings.json"));
      }
    }
    EXPECT_GE(fired, 2) << "no " << call << " to fail: the test has lost its subject";
  }
}

TEST_F(SettingsFaults, ASuddenEndAtAnyCallLeavesTheOldFileOrTheNewOne) {
  for (const std::string call : {"write", "fsync", "rename", "fchmod"}) {
    int fired = 0;
    for (int which = 1; which < mostCalls; ++which, ++fired) {
      if (!writeWithFault(call, "signal=KILL", which)) break;
      EXPECT_THAT(valueNow(), ::testing::AnyOf("old", "new")) << call << which;
    }
    EXPECT_GE(fired, 1) << call;
  }
}

TEST_F(SettingsFaults, InterruptedCallsAreRepeated) {
  for (const std::string call : {"write", "fsync"}) {
    ASSERT_TRUE(writeWithFault(call, "error=EINTR", 1));
    EXPECT_EQ(status, 0) << call;
    EXPECT_EQ(valueNow(), "new") << call;
  }
}

}  // namespace
}  // namespace tarnwick
