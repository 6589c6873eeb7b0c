#pragma once

#include <memory>

#include "core/async/main_thread.h"

namespace tarnwick {

/// The main thread on Qt's event loop. Made on the thread that runs the loop, after the
/// QCoreApplication; work that is still waiting when it ends is dropped.
///
/// However much is posted, painting and input get their turn: after a few milliseconds of posted
/// work the rest waits for the loop's next round. Work goes on inside nested loops (dialogs) too.
class QtMainThread final : public MainThread {
 public:
  QtMainThread();
  ~QtMainThread() override;

  void post(std::function<void()> work) override;
  void postAfter(Duration delay, std::function<void()> work) override;
  [[nodiscard]] TimePoint now() const override { return Clock::now(); }

 private:
  class Inbox;
  std::unique_ptr<Inbox> inbox_;
};

}  // namespace tarnwick
