#include "core/settings/keychain.h"

#include <deque>
#include <functional>
#include <mutex>
#include <utility>

#include "core/text/utf8.h"

namespace tarnwick {

namespace {

constexpr const char* serviceName = "Tarnwick";

SecretAnswer findText(SecretService& service, const SecretKey& key) {
  SecretAnswer answer = service.find(key);
  if (answer.status != SecretStatus::found) return answer;
  const bool isText = wellFormedUtf8Prefix(answer.bytes) == answer.bytes.size();
  return isText ? answer : SecretAnswer(SecretStatus::missing);
}

}  // namespace

/// One call after the other, each on the worker that is busy with this queue. Whatever was queued
/// when a worker took it up is carried out, so that a password made just before the program ends
/// still reaches the store.
struct Keychain::Serial final : WorkerQueue, std::enable_shared_from_this<Keychain::Serial> {
  explicit Serial(WorkerQueue& pool) : workers(pool) {}

  void run(std::function<void()> work) override {
    {
      const std::lock_guard lock(mutex);
      waiting.push_back(std::move(work));
      if (std::exchange(busy, true)) return;
    }
    workers.run([self = shared_from_this()] { self->drain(); });
  }

  void drain() {
    while (true) {
      std::function<void()> work;
      {
        const std::lock_guard lock(mutex);
        if (waiting.empty()) {
          busy = false;
          return;
        }
        work = std::move(waiting.front());
        waiting.pop_front();
      }
      work();
    }
  }

  WorkerQueue& workers;
  std::mutex mutex;
  std::deque<std::function<void()>> waiting;
  bool busy = false;
};

Keychain::Keychain(SecretService& service, WorkerQueue& workers, MainThread& mainThread)
    : service_(service), serial_(std::make_shared<Serial>(workers)), mainThread_(mainThread) {}

Keychain::~Keychain() = default;

Task<SecretAnswer> Keychain::get(std::string account) {
  std::function<SecretAnswer()> job = [&service = service_,
                                       key = SecretKey(serviceName, std::move(account))] {
    return findText(service, key);
  };
  return onWorker(*serial_, mainThread_, std::move(job));
}

Task<SecretStatus> Keychain::set(std::string value, std::string account) {
  std::function<SecretStatus()> job = [&service = service_, value = std::move(value),
                                       key = SecretKey(serviceName, std::move(account))] {
    service.remove(key);
    return service.add(key, value);
  };
  return onWorker(*serial_, mainThread_, std::move(job));
}

}  // namespace tarnwick
