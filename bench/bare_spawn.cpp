#include "bench/bare_spawn.h"

#include <benchmark/benchmark.h>
#include <cstdlib>
#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace tarnwick {

std::size_t bareRun(const std::vector<std::string>& command, Collect collect) {
  int out[2];
  int err[2];
  if (::pipe2(out, O_CLOEXEC) != 0 || ::pipe2(err, O_CLOEXEC) != 0) std::abort();
  posix_spawn_file_actions_t actions;
  ::posix_spawn_file_actions_init(&actions);
  ::posix_spawn_file_actions_adddup2(&actions, out[1], STDOUT_FILENO);
  ::posix_spawn_file_actions_adddup2(&actions, err[1], STDERR_FILENO);
  std::vector<std::string> words = command;
  std::vector<char*> argv;
  for (std::string& word : words) argv.push_back(word.data());
  argv.push_back(nullptr);
  pid_t pid = 0;
  if (::posix_spawn(&pid, argv[0], &actions, nullptr, argv.data(), environ) != 0) std::abort();
  ::posix_spawn_file_actions_destroy(&actions);
  ::close(out[1]);
  ::close(err[1]);

  std::string collected;
  std::size_t total = 0;
  static char buffer[64 * 1024];
  pollfd files[2] = {{out[0], POLLIN, 0}, {err[0], POLLIN, 0}};
  for (int open = 2; open > 0;) {
    ::poll(files, 2, -1);
    for (pollfd& file : files) {
      if (file.revents == 0) continue;
      const ssize_t count = ::read(file.fd, buffer, sizeof buffer);
      if (count <= 0) {
        ::close(file.fd);
        file.fd = -1;
        --open;
        continue;
      }
      total += static_cast<std::size_t>(count);
      if (collect == Collect::yes) collected.append(buffer, static_cast<std::size_t>(count));
    }
  }
  int status = 0;
  ::waitpid(pid, &status, 0);
  benchmark::DoNotOptimize(collected.data());
  return total;
}

}  // namespace tarnwick
