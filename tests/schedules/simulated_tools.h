#pragma once

#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "core/async/arrival.h"
#include "core/async/cancellation.h"
#include "core/async/task_scope.h"
#include "core/async/worker_queue.h"
#include "core/controller/http_probe.h"
#include "core/process/command_runner.h"
#include "core/process/streaming_process.h"
#include "tests/schedules/dice.h"
#include "tests/schedules/engine_model.h"
#include "tests/schedules/journal.h"

namespace tarnwick {

/// How tools behave from now on.
struct ToolManners {
  std::size_t troublePercent = 0;  ///< chance that a tool does anything but work
  bool quick = false;              ///< answers come within a second
};

/// What the simulated tools share. It outlives them and the controller.
struct ToolWorld {
  MainThread& mainThread;
  EngineModel& engine;
  Journal& journal;
  Dice& dice;
  TaskScope& processes;  ///< those that live on without the controller
  ToolManners manners{};
  /// The page as it was when the job that runs now was asked for; none for a fresh look.
  std::optional<std::pair<TimePoint, EngineModel::Page>> oldPage{};

  [[nodiscard]] bool trouble() { return dice.percent(manners.troublePercent); }
  /// How long a tool takes that has no more time than `limit`.
  Duration drawDelay(Duration limit);
};

/// Commands that work on the model after a while, or fail, or run into their time limit, or cannot
/// be started. What a command does or sees happens at some moment while it is under way.
class SimulatedRunner final : public CommandRunner {
 public:
  explicit SimulatedRunner(ToolWorld& world) : world_(world) {}
  Task<CommandResult> run(std::string exe, std::vector<std::string> args, double timeout,
                          Environment env) override;

 private:
  Task<CommandResult> carryOut(std::vector<std::string> words, Duration limit);

  ToolWorld& world_;
};

/// Long tools: they write lines and end well, fail, cannot be started, or hang until they are
/// asked to end. They go on when nobody waits for them any more.
class SimulatedStream final : public StreamingProcess,
                              public std::enable_shared_from_this<SimulatedStream> {
 public:
  explicit SimulatedStream(ToolWorld& world) : world_(world) {}
  Task<std::int32_t> run(std::string exe, std::vector<std::string> args, Environment env,
                         LineCallback onLine) override;
  void cancel() override;

 private:
  using Ended = std::shared_ptr<Arrival<std::int32_t>::State>;
  Task<void> work(std::shared_ptr<SimulatedStream> self, std::vector<std::string> args,
                  LineCallback onLine, Ended ended);
  Task<std::int32_t> talk(std::vector<std::string> args, LineCallback onLine);
  Task<void> pause(Duration duration);
  void write(const std::vector<std::string>& args, const LineCallback& onLine);
  void takeEffect(const std::vector<std::string>& args);

  ToolWorld& world_;
  CancellationSource source_;
  bool deaf_ = false;  ///< running, and not asked to end yet
};

/// The desktop's page. An answer is as old as the controller's question or as fresh as its arrival.
class SimulatedPage final : public HttpProbe {
 public:
  explicit SimulatedPage(ToolWorld& world) : world_(world) {}
  std::optional<int> status(const std::string& url, std::chrono::milliseconds timeout) override;

 private:
  ToolWorld& world_;
};

/// Workers on virtual time that take a while, each job another one.
class SimulatedWorkers final : public WorkerQueue {
 public:
  explicit SimulatedWorkers(ToolWorld& world) : world_(world) {}
  void run(std::function<void()> work) override;

 private:
  ToolWorld& world_;
};

}  // namespace tarnwick
