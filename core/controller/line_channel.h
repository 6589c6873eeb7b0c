#pragma once

#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>

#include "core/async/main_thread.h"

namespace tarnwick {

/// Carries a tool's lines from its reader thread to the main thread, in order. A reader that is far
/// ahead waits, so that memory stays bounded and the pipe itself slows the tool down; the main
/// thread gets the lines in portions, so that it stays responsive.
class LineChannel : public std::enable_shared_from_this<LineChannel> {
 public:
  using Consumer = std::function<void(std::string_view line)>;

  /// `consume` is called on the main thread, once for each line.
  LineChannel(MainThread& mainThread, Consumer consume);

  /// Hands a line over; waits while too much is under way. One reader thread at a time. Lines after
  /// close() are dropped.
  void push(std::string_view line);

  /// Drops what is under way and frees a waiting reader. Main thread.
  void close();

 private:
  void deliver();

  static constexpr std::size_t maxWaitingBytes = 128 * 1024;

  MainThread& mainThread_;
  const Consumer consume_;
  std::mutex mutex_;
  std::condition_variable taken_;
  std::string waiting_;  ///< lines, each ended by a line feed
  bool deliveryPosted_ = false;
  bool closed_ = false;
};

}  // namespace tarnwick
