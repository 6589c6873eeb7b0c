#pragma once

#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "core/async/sleep.h"
#include "core/process/streaming_process.h"

namespace tarnwick {

/// What fake streaming processes do, by the first argument of their command, and what they were
/// asked for. It outlives them.
class StreamScript {
 public:
  struct Run {
    /// Each line with the pause before it.
    std::vector<std::pair<Duration, std::string>> lines;
    Duration pauseBeforeEnd{};
    std::int32_t status = 0;
  };
  struct Call {
    std::string exe;
    std::vector<std::string> args;
    Environment env;
  };

  /// Commands that are not here end at once with status 0 and no line.
  std::map<std::string, Run> runs;
  std::vector<Call> calls;
  /// Number of runs that a cancel ended.
  int terminated = 0;
};

/// Runs its script on virtual time; its lines come on the main thread. A cancel ends it at once, as
/// SIGTERM does.
class FakeStreamingProcess final : public StreamingProcess {
 public:
  FakeStreamingProcess(MainThread& mainThread, StreamScript& script)
      : mainThread_(mainThread), script_(script) {}

  static StreamingProcessFactory factory(MainThread& mainThread, StreamScript& script) {
    return [&mainThread, &script] {
      return std::make_shared<FakeStreamingProcess>(mainThread, script);
    };
  }

  Task<std::int32_t> run(std::string exe, std::vector<std::string> args, Environment env,
                         LineCallback onLine) override {
    constexpr std::int32_t endedBySigterm = 143;
    const CancellationToken token = source_.token();
    if (token.isCancelled()) co_return cancelledBeforeStart;
    const StreamScript::Run planned = script_.runs[args.empty() ? std::string() : args.front()];
    StreamScript::Call call;
    call.exe = std::move(exe);
    call.args = std::move(args);
    call.env = std::move(env);
    script_.calls.push_back(std::move(call));
    for (const auto& [pause, line] : planned.lines) {
      co_await sleepFor(mainThread_, pause, token);
      if (token.isCancelled()) break;
      onLine(line);
    }
    co_await sleepFor(mainThread_, planned.pauseBeforeEnd, token);
    if (!token.isCancelled()) co_return planned.status;
    ++script_.terminated;
    co_return endedBySigterm;
  }

  void cancel() override { source_.cancel(); }

 private:
  MainThread& mainThread_;
  StreamScript& script_;
  CancellationSource source_;
};

}  // namespace tarnwick
