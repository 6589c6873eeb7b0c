#pragma once

#include <memory>
#include <optional>
#include <string>

#include "core/async/main_thread.h"
#include "core/async/task.h"
#include "core/async/worker_queue.h"
#include "core/settings/secret_service.h"

namespace tarnwick {

/// Generic-password items of the service "Tarnwick". The store is asked on a worker thread, so that
/// one that is slow never stops the interface, for one call at a time and in the order in which the
/// tasks begin. Main thread only; `service` outlives the worker queue's threads, which finish what
/// was asked of them after this object is gone.
class Keychain {
 public:
  Keychain(SecretService& service, WorkerQueue& workers, MainThread& mainThread);
  Keychain(const Keychain&) = delete;
  Keychain& operator=(const Keychain&) = delete;
  ~Keychain();

  /// The item's text. An item whose bytes are not UTF-8 reads as missing.
  Task<SecretAnswer> get(std::string account);

  /// Replaces the item: deletes all of the account, then adds one. Gives `found` when it is stored.
  Task<SecretStatus> set(std::string value, std::string account);

 private:
  struct Serial;
  SecretService& service_;
  std::shared_ptr<Serial> serial_;
  MainThread& mainThread_;
};

}  // namespace tarnwick
