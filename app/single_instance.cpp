#include "app/single_instance.h"

#include <chrono>
#include <thread>

namespace tarnwick {

using namespace std::chrono_literals;

SingleInstance::SingleInstance(std::string folder, AnswerLimits limits)
    : lock_(std::move(folder)), limits_(limits) {}

SingleInstance::Entry SingleInstance::enter(const Request& request) {
  return passOnOr(request, [this] { socket_ = lock_.listen(); });
}

SingleInstance::Entry SingleInstance::passOn(const Request& request) {
  return passOnOr(request, [this] { lock_.unlock(); });
}

// The other process may have taken the lock a moment ago and not listen yet, or be about to end and
// not listen any more: both pass.
SingleInstance::Entry SingleInstance::passOnOr(const Request& request,
                                               const std::function<void()>& whenNobodyIsThere) {
  const auto deadline = std::chrono::steady_clock::now() + limits_.sign;
  while (true) {
    const InstanceLock::State state = lock_.tryLock();
    Reached other;
    if (state != InstanceLock::State::held) other = ask(lock_.socketPath(), request, limits_);
    if (other.contact == Contact::answered) return {Role::passedOn, std::move(other.answer)};
    // A disk that takes no files is no reason not to start.
    if (other.contact == Contact::unreachable && state != InstanceLock::State::heldByOther) {
      whenNobodyIsThere();
      return {};
    }
    if (other.contact == Contact::silent || std::chrono::steady_clock::now() >= deadline) {
      return {Role::otherIsSilent, {}};
    }
    std::this_thread::sleep_for(50ms);
  }
}

}  // namespace tarnwick
