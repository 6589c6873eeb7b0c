#pragma once

#include <chrono>

#include "core/settings/secret_service.h"

namespace tarnwick {

/// The desktop's Secret Service. Any thread, whatever event loop the program runs: every call
/// brings a loop of its own. A store that asks for a prompt is taken for a locked one and its
/// prompt is never shown.
class LibsecretService final : public SecretService {
 public:
  /// A call that has taken `limit` gives `unavailable`.
  explicit LibsecretService(std::chrono::milliseconds limit = std::chrono::seconds(3))
      : limit_(limit) {}

  SecretAnswer find(const SecretKey& key) override;
  SecretStatus remove(const SecretKey& key) override;
  SecretStatus add(const SecretKey& key, const std::string& bytes) override;

 private:
  std::chrono::milliseconds limit_;
};

}  // namespace tarnwick
