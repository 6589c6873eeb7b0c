#include "core/async/published.h"

#include <vector>

namespace tarnwick {

struct ChangeSignal::Observers {
  using Observer = std::function<void()>;
  std::vector<std::weak_ptr<Observer>> known;
};

ChangeSignal::ChangeSignal() : observers_(std::make_shared<Observers>()) {}

std::shared_ptr<void> ChangeSignal::observe(std::function<void()> observer) {
  auto held = std::make_shared<Observers::Observer>(std::move(observer));
  std::erase_if(observers_->known, [](const auto& other) { return other.expired(); });
  observers_->known.push_back(held);
  return held;
}

// By index: an observer may add another one while it is told.
void ChangeSignal::announce() {
  const auto observers = observers_;
  for (std::size_t i = 0; i < observers->known.size(); ++i) {
    if (const auto observer = observers->known[i].lock()) (*observer)();
  }
}

}  // namespace tarnwick
