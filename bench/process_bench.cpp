// The runners against the least that starting a child and reading its output can cost.

#include <benchmark/benchmark.h>
#include <condition_variable>
#include <deque>
#include <fcntl.h>
#include <filesystem>
#include <mutex>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include "bench/comparison.h"
#include "core/async/task_scope.h"
#include "core/async/worker_queue.h"
#include "core/process/cli.h"
#include "core/process/tool_stream.h"

namespace tarnwick {
namespace {

constexpr const char* tool = TARNWICK_BENCH_TOOL;
constexpr const char* nothing = "/bin/true";
constexpr std::size_t floodBytes = 160'000'000;
const std::string floodSize = std::to_string(floodBytes);

class LoopThread final : public MainThread {
 public:
  void post(std::function<void()> work) override {
    const std::lock_guard lock(mutex_);
    posted_.push_back(std::move(work));
    changed_.notify_one();
  }
  void postAfter(Duration, std::function<void()> work) override { post(std::move(work)); }
  [[nodiscard]] TimePoint now() const override { return Clock::now(); }

  void runUntil(const bool& done) {
    while (!done) {
      std::unique_lock lock(mutex_);
      changed_.wait(lock, [this] { return !posted_.empty(); });
      const auto work = std::move(posted_.front());
      posted_.pop_front();
      lock.unlock();
      work();
    }
  }

 private:
  std::mutex mutex_;
  std::condition_variable changed_;
  std::deque<std::function<void()>> posted_;
};

struct Program {
  Tools tools{Tools::Config::fromProcess(),
              AppPaths(std::filesystem::temp_directory_path() / "tarnwick-bench", "/nonexistent")};
  LoopThread mainThread;
  ThreadPool workers;
  CLI cli{tools, workers, mainThread};
};

Program& program() {
  static Program instance;
  return instance;
}

enum class Collect { no, yes };

/// posix_spawn, two pipes, poll, waitpid, and nothing else.
std::size_t bareRun(const char* exe, const char* argument, Collect collect) {
  int out[2];
  int err[2];
  if (::pipe2(out, O_CLOEXEC) != 0 || ::pipe2(err, O_CLOEXEC) != 0) std::abort();
  posix_spawn_file_actions_t actions;
  ::posix_spawn_file_actions_init(&actions);
  ::posix_spawn_file_actions_adddup2(&actions, out[1], STDOUT_FILENO);
  ::posix_spawn_file_actions_adddup2(&actions, err[1], STDERR_FILENO);
  std::string name(exe);
  std::string text(argument);
  char* argv[] = {name.data(), text.empty() ? nullptr : text.data(), nullptr};
  pid_t pid = 0;
  if (::posix_spawn(&pid, exe, &actions, nullptr, argv, environ) != 0) std::abort();
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

void check(benchmark::State& state, bool held) {
  if (!held) state.SkipWithError("the tool did not do what was measured");
}

void spawn_bare(benchmark::State& state) {
  for (auto _ : state) bareRun(nothing, "", Collect::no);
}

void spawn_runSync(benchmark::State& state) {
  for (auto _ : state) check(state, program().cli.runSync(nothing, {}, 20, {}).succeeded());
}

void output_bare_dropped(benchmark::State& state) {
  for (auto _ : state) check(state, bareRun(tool, floodSize.c_str(), Collect::no) == floodBytes);
}

void output_bare(benchmark::State& state) {
  for (auto _ : state) check(state, bareRun(tool, floodSize.c_str(), Collect::yes) == floodBytes);
}

void output_runSync(benchmark::State& state) {
  for (auto _ : state) {
    const CommandResult result = program().cli.runSync(tool, {floodSize}, 60, {});
    check(state, result.out.size() == floodBytes);
  }
}

Task<void> streamOnce(std::shared_ptr<StreamingProcess> stream, std::vector<std::string> args,
                      LineCallback onLine, bool& done) {
  Environment env;
  const std::int32_t status =
      co_await stream->run(tool, std::move(args), std::move(env), std::move(onLine));
  done = status == 0;
  if (!done) std::abort();
}

void streamLines(benchmark::State& state, std::vector<std::string> args) {
  Program& all = program();
  for (auto _ : state) {
    std::size_t bytes = 0;
    std::size_t lines = 0;
    bool done = false;
    const LineCallback count = [&bytes, &lines](std::string_view line) {
      bytes += line.size();
      ++lines;
    };
    TaskScope scope(all.mainThread);
    const auto stream = ToolStream::factory(all.tools, all.workers, all.mainThread)();
    scope.start(streamOnce(stream, args, count, done));
    all.mainThread.runUntil(done);
    check(state, lines > 2'900'000 && bytes + lines >= floodBytes);
  }
}

void stream_lines(benchmark::State& state) {
  streamLines(state, {floodSize});
}

void stream_lines_mixed(benchmark::State& state) {
  streamLines(state, {floodSize, "mixed"});
}

constexpr auto ms = benchmark::kMillisecond;
// One start at a time, so that a start that the machine's other load held up is one sample of many.
BENCHMARK(spawn_bare)->UseRealTime()->Iterations(1)->Repetitions(500)->Unit(ms);
BENCHMARK(spawn_runSync)->UseRealTime()->Iterations(1)->Repetitions(500)->Unit(ms);
BENCHMARK(output_bare_dropped)->UseRealTime()->Iterations(1)->Unit(ms);
BENCHMARK(output_bare)->UseRealTime()->Iterations(1)->Unit(ms);
BENCHMARK(output_runSync)->UseRealTime()->Iterations(1)->Unit(ms);
BENCHMARK(stream_lines)->UseRealTime()->Iterations(1)->Unit(ms);
BENCHMARK(stream_lines_mixed)->UseRealTime()->Iterations(1)->Unit(ms);

}  // namespace
}  // namespace tarnwick

int main(int argc, char** argv) {
  const double megabytes = static_cast<double>(tarnwick::floodBytes) / 1e6;
  return tarnwick::runAndCompare(
      argc, argv,
      {{"runSync of nothing, time against a bare spawn", "spawn_runSync", "spawn_bare", 1.10},
       {"runSync of nothing, time against QProcess", "spawn_runSync", "spawn_qprocess", 1.0},
       {"runSync of 160 MB, time against a bare spawn", "output_runSync", "output_bare", 1 / 0.8},
       {"the same against one that drops the output", "output_runSync", "output_bare_dropped",
        1 / 0.8},
       {"160 MB in lines, time against QProcess", "stream_lines", "lines_qprocess", 0.5}},
      {{"160 MB in 3 million lines, to a callback", "stream_lines", megabytes, 300},
       {"the same with text beyond ASCII", "stream_lines_mixed", megabytes, 300}});
}
