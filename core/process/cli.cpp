#include "core/process/cli.h"

#include <algorithm>
#include <array>
#include <mutex>

#include "core/process/child_process.h"
#include "core/process/output_buffer.h"
#include "core/text/utf8.h"

namespace tarnwick {
namespace {

/// How long a tool that was asked to end has got to do so.
constexpr auto grace = std::chrono::seconds(3);

Duration toDuration(double seconds) {
  constexpr double longest = 1e9;  // about thirty years; more would overflow the clock
  // Also catches what is not a number.
  if (!(seconds > 0)) return Duration::zero();
  return std::chrono::duration_cast<Duration>(
      std::chrono::duration<double>(std::min(seconds, longest)));
}

}  // namespace

class CLI::Runner {
 public:
  explicit Runner(const Tools& tools) : tools_(tools) {}

  CommandResult run(const std::string& exe, const std::vector<std::string>& args, double timeout,
                    const Environment& env) {
    reapGivenUp();
    auto started = start(exe, args, env);
    if (const auto* reason = std::get_if<std::error_code>(&started)) {
      return CommandResult(-1, {}, reason->message(), false);
    }
    auto& child = std::get<ChildProcess>(started);

    std::array<OutputBuffer, 2> texts;
    const OutputSink collect = [&texts](OutputStream stream, std::string_view bytes) {
      texts[static_cast<std::size_t>(stream)].append(bytes);
    };
    const bool timedOut = !child.readUntilEnd(Clock::now() + toDuration(timeout), collect);
    if (timedOut) {
      child.terminate();
      static_cast<void>(child.readUntilEnd(Clock::now() + grace, collect));
    }
    const std::optional<std::int32_t> status = child.reap();
    if (!status) giveUp(std::move(child));
    return CommandResult(status.value_or(-1), decodeUtf8(texts[0].take()),
                         decodeUtf8(texts[1].take()), timedOut);
  }

 private:
  using Started = std::variant<ChildProcess, std::error_code>;

  [[nodiscard]] Started start(const std::string& exe, const std::vector<std::string>& args,
                              const Environment& env) const {
    // Most calls add nothing, and a copy of the environment costs about 100 allocations.
    if (env.empty()) {
      return ChildProcess::start(exe, args, tools_.environment(), OutputPipes::separate);
    }
    return ChildProcess::start(exe, args, tools_.environment(env), OutputPipes::separate);
  }

  /// Keeps a tool that does not end, so that it can be reaped when it has ended at last.
  void giveUp(ChildProcess child) {
    child.closePipes();
    const std::lock_guard lock(mutex_);
    givenUp_.push_back(std::move(child));
  }

  void reapGivenUp() {
    const std::lock_guard lock(mutex_);
    std::erase_if(givenUp_, [](ChildProcess& child) { return child.reap().has_value(); });
  }

  const Tools& tools_;
  std::mutex mutex_;
  std::vector<ChildProcess> givenUp_;
};

CLI::CLI(const Tools& tools, WorkerQueue& workers, MainThread& mainThread)
    : runner_(std::make_shared<Runner>(tools)), workers_(workers), mainThread_(mainThread) {}

CLI::~CLI() = default;

CommandResult CLI::runSync(const std::string& exe, const std::vector<std::string>& args,
                           double timeout, const Environment& env) const {
  return runner_->run(exe, args, timeout, env);
}

Task<CommandResult> CLI::run(std::string exe, std::vector<std::string> args, double timeout,
                             Environment env) {
  std::function<CommandResult()> job = [runner = runner_, exe = std::move(exe),
                                        args = std::move(args), timeout, env = std::move(env)] {
    return runner->run(exe, args, timeout, env);
  };
  co_return co_await onWorker<CommandResult>(workers_, mainThread_, std::move(job));
}

}  // namespace tarnwick
