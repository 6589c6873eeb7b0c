#include "core/process/tool_stream.h"

#include <mutex>

#include "core/process/child_process.h"
#include "core/process/line_splitter.h"
#include "core/text/utf8.h"

namespace tarnwick {

/// Where the run and cancel() meet.
class ToolStream::Control {
 public:
  [[nodiscard]] bool isCancelled() {
    const std::lock_guard lock(mutex_);
    return cancelled_;
  }

  /// From here on cancel() reaches the child; one that came while it was started reaches it now.
  void attach(const ChildProcess& child) {
    const std::lock_guard lock(mutex_);
    child_ = &child;
    if (cancelled_) child.terminate();
  }

  void detach() {
    const std::lock_guard lock(mutex_);
    child_ = nullptr;
  }

  void cancel() {
    const std::lock_guard lock(mutex_);
    cancelled_ = true;
    if (child_ != nullptr) child_->terminate();
  }

 private:
  std::mutex mutex_;
  bool cancelled_ = false;
  const ChildProcess* child_ = nullptr;
};

ToolStream::ToolStream(const Tools& tools, WorkerQueue& workers, MainThread& mainThread)
    : control_(std::make_shared<Control>()),
      tools_(tools),
      workers_(workers),
      mainThread_(mainThread) {}

ToolStream::~ToolStream() = default;

StreamingProcessFactory ToolStream::factory(const Tools& tools, WorkerQueue& workers,
                                            MainThread& mainThread) {
  return [&tools, &workers, &mainThread] {
    return std::make_shared<ToolStream>(tools, workers, mainThread);
  };
}

Task<std::int32_t> ToolStream::run(std::string exe, std::vector<std::string> args, Environment env,
                                   LineCallback onLine) {
  std::function<std::int32_t()> job = [control = control_, &tools = tools_, exe = std::move(exe),
                                       args = std::move(args), env = std::move(env),
                                       onLine = std::move(onLine)] {
    return runBlocking(*control, tools, exe, args, env, onLine);
  };
  co_return co_await onWorker<std::int32_t>(workers_, mainThread_, std::move(job));
}

void ToolStream::cancel() {
  control_->cancel();
}

std::int32_t ToolStream::runBlocking(Control& control, const Tools& tools, const std::string& exe,
                                     const std::vector<std::string>& args, const Environment& env,
                                     const LineCallback& onLine) {
  const Environment environment = tools.environment(env);
  if (control.isCancelled()) return cancelledBeforeStart;
  auto started = ChildProcess::start(exe, args, environment, OutputPipes::merged);
  if (const auto* reason = std::get_if<std::error_code>(&started)) {
    onLine(decodeUtf8("Could not start " + exe + ": " + reason->message()));
    return couldNotStart;
  }
  auto& child = std::get<ChildProcess>(started);
  control.attach(child);

  LineSplitter lines;
  const OutputSink split = [&lines, &onLine](OutputStream, std::string_view bytes) {
    lines.feed(bytes, onLine);
  };
  static_cast<void>(child.readUntilEnd(std::nullopt, split));
  lines.flush(onLine);
  control.detach();
  return child.reap().value_or(couldNotStart);
}

}  // namespace tarnwick
