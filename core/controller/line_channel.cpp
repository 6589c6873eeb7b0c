#include "core/controller/line_channel.h"

#include <utility>

namespace tarnwick {

LineChannel::LineChannel(MainThread& mainThread, Consumer consume)
    : mainThread_(mainThread), consume_(std::move(consume)) {}

void LineChannel::push(std::string_view line) {
  std::unique_lock lock(mutex_);
  taken_.wait(lock, [this] { return closed_ || waiting_.size() < maxWaitingBytes; });
  if (closed_) return;
  waiting_.append(line).push_back('\n');
  if (std::exchange(deliveryPosted_, true)) return;
  lock.unlock();
  mainThread_.post([self = shared_from_this()] { self->deliver(); });
}

void LineChannel::deliver() {
  std::string lines;
  {
    const std::lock_guard lock(mutex_);
    lines.swap(waiting_);
    deliveryPosted_ = false;
  }
  taken_.notify_one();
  std::string_view rest = lines;
  while (!rest.empty()) {
    const std::size_t end = rest.find('\n');
    // Consuming may close the channel; only this thread does.
    if (closed_) return;
    consume_(rest.substr(0, end));
    rest.remove_prefix(end + 1);
  }
}

void LineChannel::close() {
  {
    const std::lock_guard lock(mutex_);
    closed_ = true;
    waiting_.clear();
  }
  taken_.notify_all();
}

}  // namespace tarnwick
