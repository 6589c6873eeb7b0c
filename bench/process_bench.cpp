// The runners against the least that starting a child and reading its output can cost.

#include <benchmark/benchmark.h>
#include <filesystem>

#include "bench/bare_spawn.h"
#include "bench/comparison.h"
#include "core/async/task_scope.h"
#include "core/async/worker_queue.h"
#include "core/process/cli.h"
#include "core/process/tool_stream.h"
#include "tests/support/loop_main_thread.h"

namespace tarnwick {
namespace {

constexpr const char* tool = TARNWICK_BENCH_TOOL;
constexpr const char* nothing = "/bin/true";
constexpr std::size_t floodBytes = 160'000'000;
const std::string floodSize = std::to_string(floodBytes);

struct Program {
  Tools tools{Tools::Config::fromProcess(),
              AppPaths(std::filesystem::temp_directory_path() / "tarnwick-bench", "/nonexistent")};
  LoopMainThread mainThread;
  ThreadPool workers;
  CLI cli{tools, workers, mainThread};
};

Program& program() {
  static Program instance;
  return instance;
}

void check(benchmark::State& state, bool held) {
  if (!held) state.SkipWithError("the tool did not do what was measured");
}

void spawn_bare(benchmark::State& state) {
  for (auto _ : state) bareRun({nothing}, Collect::no);
}

void spawn_runSync(benchmark::State& state) {
  for (auto _ : state) check(state, program().cli.runSync(nothing, {}, 20, {}).succeeded());
}

// What the pipe alone takes. No target: runSync's task is to keep the output, which this does not.
void output_bare_dropped(benchmark::State& state) {
  for (auto _ : state) check(state, bareRun({tool, floodSize}, Collect::no) == floodBytes);
}

void output_bare(benchmark::State& state) {
  for (auto _ : state) check(state, bareRun({tool, floodSize}, Collect::yes) == floodBytes);
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
    all.mainThread.runUntil([&done] { return done; }, std::chrono::minutes(1));
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
       {"160 MB in lines, time against QProcess", "stream_lines", "lines_qprocess", 0.5}},
      {{"160 MB in 3 million lines, to a callback", "stream_lines", megabytes, 300},
       {"the same with text beyond ASCII", "stream_lines_mixed", megabytes, 300}});
}
