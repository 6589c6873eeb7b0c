// The log at full length, and what a launch costs beside the tools that it must run.

#include <benchmark/benchmark.h>
#include <thread>

#include "bench/bare_spawn.h"
#include "bench/comparison.h"
#include "bench/instant_program.h"
#include "tests/support/listening_socket.h"
#include "tests/support/loop_main_thread.h"

namespace tarnwick {
namespace {

constexpr const char* tool = TARNWICK_BENCH_TOOL;
constexpr int linesAtOnce = 100'000;

/// Answers every request on a port of its own with an empty page.
class InstantPage {
 public:
  InstantPage() : server_([this] { serve(); }) {}
  InstantPage(const InstantPage&) = delete;
  InstantPage& operator=(const InstantPage&) = delete;
  ~InstantPage() {
    socket_.shutDown();
    server_.join();
  }
  [[nodiscard]] std::int64_t port() const { return socket_.port(); }

 private:
  void serve() {
    char request[4096];
    constexpr char answer[] = "HTTP/1.1 200 OK\r\nContent-Length: 0\r\nConnection: close\r\n\r\n";
    for (int peer = socket_.accept(); peer >= 0; peer = socket_.accept()) {
      if (::read(peer, request, sizeof request) > 0) {
        static_cast<void>(!::write(peer, answer, sizeof answer - 1));
      }
      ::close(peer);
    }
  }

  ListeningSocket socket_;
  std::thread server_;
};

/// Tools that answer at once, and a page that is up.
struct Program : InstantProgram<LoopMainThread> {
  Program() {
    controller.settings.httpPort = page.port();
    controller.settings.httpsPort = page.port();
  }

  InstantPage page;
};

/// From the press on the main button to the running desktop.
void launch(benchmark::State& state) {
  Program program;
  DesktopController& c = program.controller;
  for (auto _ : state) {
    c.startLaunch(false, false);
    const bool ended = program.mainThread.runUntil([&c] { return c.phase.get() != Phase::busy; },
                                                   std::chrono::seconds(20));
    if (!ended || c.phase.get() != Phase::running) state.SkipWithError("the launch failed");
  }
}

/// The five commands of such a launch, bare and one after the other.
void launch_bare_spawns(benchmark::State& state) {
  for (auto _ : state) {
    bareRun({tool, "info", "--format", "{{.ServerVersion}}"}, Collect::yes);
    bareRun({tool, "image", "inspect", "registry.test/linuxserver/webtop:latest"}, Collect::yes);
    bareRun({tool, "inspect", "-f", "{{.State.Running}}|{{.Config.Image}}", "tarnwick"},
            Collect::yes);
    bareRun({tool, "compose", "version"}, Collect::yes);
    bareRun({tool, "compose", "-p", "tarnwick", "-f", "compose.yml", "up", "-d"}, Collect::yes);
  }
}

void appendLines(benchmark::State& state, const std::string& line) {
  LogText log;
  while (log.text().size() < LogText::maxBytes - 200) log.appendLine(line);
  for (auto _ : state) {
    for (int i = 0; i < linesAtOnce; ++i) log.appendLine(line);
    benchmark::DoNotOptimize(log.text().data());
  }
}

void append_full_log(benchmark::State& state) {
  appendLines(state, "a1b2c3d4e5f6: Downloading  123456kB/1.5GB");
}

void append_full_log_wide(benchmark::State& state) {
  appendLines(state, "lädt … 漢字 \xF0\x9F\x91\xA9\xE2\x80\x8D\xF0\x9F\x91\xA7");
}

constexpr auto ms = benchmark::kMillisecond;
BENCHMARK(launch)->UseRealTime()->Iterations(20)->Unit(ms);
BENCHMARK(launch_bare_spawns)->UseRealTime()->Iterations(20)->Unit(ms);
BENCHMARK(append_full_log)->UseRealTime()->Iterations(5)->Unit(ms);
BENCHMARK(append_full_log_wide)->UseRealTime()->Iterations(1)->Unit(ms);

}  // namespace
}  // namespace tarnwick

int main(int argc, char** argv) {
  const double millionLines = tarnwick::linesAtOnce / 1e6;
  return tarnwick::runAndCompare(
      argc, argv, {{"a launch, time against its bare spawns", "launch", "launch_bare_spawns", 3.0}},
      {{"lines into a full log, in millions", "append_full_log", millionLines, 1.0}});
}
