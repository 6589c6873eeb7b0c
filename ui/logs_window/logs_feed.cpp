#include "ui/logs_window/logs_feed.h"

#include <utility>

#include "core/async/sleep.h"

namespace tarnwick {

LogsFeed::LogsFeed(Docker& docker, MainThread& mainThread, std::function<void()> changed)
    : docker_(docker), mainThread_(mainThread), changed_(std::move(changed)), tasks_(mainThread) {
  tasks_.start(loop());
}

void LogsFeed::refresh() {
  tasks_.start(load());
}

Task<void> LogsFeed::load() {
  if (loading_) co_return;
  loading_ = true;
  std::string text = co_await docker_.logs(tail);
  text_ = std::move(text);
  loading_ = false;
  changed_();
}

Task<void> LogsFeed::loop() {
  for (;;) {
    const bool due = follow_ || text_ == initialText;
    if (due) {
      co_await load();
    }
    const CancellationToken never;
    co_await sleepFor(mainThread_, period, never);
  }
}

}  // namespace tarnwick
