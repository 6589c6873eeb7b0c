#pragma once

#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "core/settings/secret_service.h"

namespace tarnwick {

/// Secrets in memory, for worker threads. An item is added, never updated, as in a real store: two
/// adds of one key leave two items.
class MemorySecretService final : public SecretService {
 public:
  /// Every call answers `status` (locked or unavailable) and changes nothing, until `unlock`.
  void refuse(SecretStatus status) {
    const std::lock_guard lock(mutex_);
    refusal_ = status;
  }
  void unlock() {
    const std::lock_guard lock(mutex_);
    refusal_.reset();
  }
  void put(const std::string& account, const std::string& bytes) {
    const std::lock_guard lock(mutex_);
    items_[{"Tarnwick", account}] = {bytes};
  }
  void erase(const std::string& account) {
    const std::lock_guard lock(mutex_);
    items_.erase({"Tarnwick", account});
  }
  /// The items of the account, oldest first.
  [[nodiscard]] std::vector<std::string> items(const std::string& account) {
    const std::lock_guard lock(mutex_);
    return items_[{"Tarnwick", account}];
  }
  /// Names of the calls so far: "find", "remove", "add".
  [[nodiscard]] std::vector<std::string> calls() {
    const std::lock_guard lock(mutex_);
    return calls_;
  }

  SecretAnswer find(const SecretKey& key) override {
    const std::lock_guard lock(mutex_);
    calls_.emplace_back("find");
    if (refusal_) return SecretAnswer(*refusal_);
    const auto& known = items_[{key.service, key.account}];
    if (known.empty()) return SecretAnswer(SecretStatus::missing);
    return SecretAnswer(SecretStatus::found, known.front());
  }
  SecretStatus remove(const SecretKey& key) override {
    const std::lock_guard lock(mutex_);
    calls_.emplace_back("remove");
    if (refusal_) return *refusal_;
    return items_.erase({key.service, key.account}) > 0 ? SecretStatus::found
                                                        : SecretStatus::missing;
  }
  SecretStatus add(const SecretKey& key, const std::string& bytes) override {
    const std::lock_guard lock(mutex_);
    calls_.emplace_back("add");
    if (refusal_) return *refusal_;
    items_[{key.service, key.account}].push_back(bytes);
    return SecretStatus::found;
  }

 private:
  std::mutex mutex_;
  std::optional<SecretStatus> refusal_;
  std::map<std::pair<std::string, std::string>, std::vector<std::string>> items_;
  std::vector<std::string> calls_;
};

}  // namespace tarnwick
