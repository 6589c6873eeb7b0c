#include "app/single_instance.h"

#include <chrono>
#include <thread>

namespace tarnwick {

using namespace std::chrono_literals;

SingleInstance::SingleInstance(std::string folder, AnswerLimits limits)
    : lock_(std::move(folder)), limits_(limits) {}

namespace {

using Clock = std::chrono::steady_clock;

constexpr auto pauseBetweenTries = 50ms;

}  // namespace

/// Tries once. `unreachable` with a lock that somebody else holds passes: the holder has begun a
/// moment ago and does not listen yet, or is quitting and does not listen any more.
Reached SingleInstance::askHolder(const Request& request, InstanceLock::State& state) {
  state = lock_.tryLock();
  if (state == InstanceLock::State::held) return {};
  return ask(lock_.socketPath(), request, limits_);
}

SingleInstance::Entry SingleInstance::enter(const Request& request) {
  const auto deadline = Clock::now() + limits_.quit;
  while (true) {
    InstanceLock::State state = {};
    Reached other = askHolder(request, state);
    if (other.contact == Contact::answered) return {Role::passedOn, std::move(other.answer)};
    if (other.contact == Contact::silent) return {Role::otherIsSilent, {}};
    // A disk that takes no files is no reason not to start.
    if (state != InstanceLock::State::heldByOther) {
      socket_ = lock_.listen();
      return {};
    }
    if (Clock::now() >= deadline) return {Role::otherIsSilent, {}};
    std::this_thread::sleep_for(pauseBetweenTries);
  }
}

// Whoever only asks can do so beside a process that is quitting.
SingleInstance::Entry SingleInstance::passOn(const Request& request) {
  const auto deadline = Clock::now() + limits_.sign;
  while (true) {
    InstanceLock::State state = {};
    Reached other = askHolder(request, state);
    lock_.unlock();
    if (other.contact == Contact::answered) return {Role::passedOn, std::move(other.answer)};
    if (other.contact == Contact::silent) return {Role::otherIsSilent, {}};
    if (state != InstanceLock::State::heldByOther || Clock::now() >= deadline) return {};
    std::this_thread::sleep_for(pauseBetweenTries);
  }
}

}  // namespace tarnwick
