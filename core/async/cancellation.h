#pragma once

#include <functional>
#include <memory>

namespace tarnwick {

namespace detail {
struct CancellationState;
}

/// The receiving end of a CancellationSource. Copies share one state. Main thread only.
class CancellationToken {
 public:
  /// A token that is never cancelled.
  CancellationToken();
  [[nodiscard]] bool isCancelled() const;

  /// Calls `action` once when cancellation is requested, inside that call; at once when it already
  /// was. Dropping the returned handle withdraws the action.
  [[nodiscard]] std::shared_ptr<void> onCancel(std::function<void()> action) const;

 private:
  friend class CancellationSource;
  explicit CancellationToken(std::shared_ptr<detail::CancellationState> state);
  std::shared_ptr<detail::CancellationState> state_;
};

/// Ends pending waits early. It interrupts nothing else: whoever awaits goes on and looks at the
/// state of affairs. Main thread only.
class CancellationSource {
 public:
  CancellationSource();
  [[nodiscard]] CancellationToken token() const;
  void cancel();

 private:
  std::shared_ptr<detail::CancellationState> state_;
};

}  // namespace tarnwick
