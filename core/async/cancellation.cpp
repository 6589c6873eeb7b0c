#include "core/async/cancellation.h"

#include <utility>
#include <vector>

namespace tarnwick {

namespace detail {
struct CancellationState {
  using Action = std::function<void()>;
  bool cancelled = false;
  std::vector<std::weak_ptr<Action>> actions;
};
}  // namespace detail

CancellationToken::CancellationToken() : state_(std::make_shared<detail::CancellationState>()) {}
CancellationToken::CancellationToken(std::shared_ptr<detail::CancellationState> state)
    : state_(std::move(state)) {}

bool CancellationToken::isCancelled() const {
  return state_->cancelled;
}

std::shared_ptr<void> CancellationToken::onCancel(std::function<void()> action) const {
  if (state_->cancelled) {
    action();
    return nullptr;
  }
  auto held = std::make_shared<std::function<void()>>(std::move(action));
  std::erase_if(state_->actions, [](const auto& known) { return known.expired(); });
  state_->actions.push_back(held);
  return held;
}

CancellationSource::CancellationSource() : state_(std::make_shared<detail::CancellationState>()) {}

CancellationToken CancellationSource::token() const {
  return CancellationToken(state_);
}

void CancellationSource::cancel() {
  state_->cancelled = true;
  const auto actions = std::exchange(state_->actions, {});
  for (const auto& action : actions) {
    if (const auto held = action.lock()) (*held)();
  }
}

}  // namespace tarnwick
