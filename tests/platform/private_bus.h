#pragma once

#include <optional>
#include <string>
#include <sys/types.h>
#include <vector>

#include "tests/support/temporary_folder.h"

namespace tarnwick {

/// A program that is ended with its owner.
class Companion {
 public:
  /// Starts it with `input` as its whole standard input, and a private HOME in `folder`.
  Companion(std::vector<std::string> words, const std::string& input, const std::string& folder);
  Companion(const Companion&) = delete;
  Companion& operator=(const Companion&) = delete;
  ~Companion();

  void send(int signal) const;

 private:
  pid_t pid_ = -1;
};

/// A session bus of a test's own that starts no services by itself. Makes it the bus of this
/// process for as long as it lives.
class PrivateBus {
 public:
  PrivateBus();
  ~PrivateBus();

  /// Whether the bus answers; false where no bus can be had.
  [[nodiscard]] bool isUp() const { return bus_.has_value(); }

  /// Starts a keyring service and waits until it is there; unlocked by the given password, or with
  /// no keyring at all. False where none can be had.
  bool startKeyring(const std::optional<std::string>& password);
  void stopKeyring() { keyring_.reset(); }
  [[nodiscard]] const Companion& keyring() const { return *keyring_; }

  /// Locks every collection of the keyring service.
  void lockKeyring() const;

  void end() { bus_.reset(); }

 private:
  TemporaryFolder folder_;
  std::optional<Companion> bus_;
  std::optional<Companion> keyring_;
};

}  // namespace tarnwick
