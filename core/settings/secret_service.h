#pragma once

#include <string>
#include <utility>

namespace tarnwick {

/// What identifies a secret: a generic password of one service and account.
class SecretKey {
 public:
  SecretKey(std::string itsService, std::string itsAccount)
      : service(std::move(itsService)), account(std::move(itsAccount)) {}
  std::string service;
  std::string account;
};

enum class SecretStatus {
  found,
  missing,      ///< the store answers and has no such item
  locked,       ///< the store answers but does not show its items; one may well be there
  unavailable,  ///< no store, or it did not answer in time
};

class SecretAnswer {
 public:
  explicit SecretAnswer(SecretStatus itsStatus, std::string itsBytes = {})
      : status(itsStatus), bytes(std::move(itsBytes)) {}
  SecretStatus status;
  std::string bytes;  ///< the secret when found, as stored
};

/// The user's secret store. All calls block, for a few seconds at most; they are made on worker
/// threads, one at a time, and never prompt the user.
class SecretService {
 public:
  SecretService() = default;
  SecretService(const SecretService&) = delete;
  SecretService& operator=(const SecretService&) = delete;
  virtual ~SecretService() = default;

  virtual SecretAnswer find(const SecretKey& key) = 0;
  /// Deletes every item of the key; whether there was one makes no difference.
  virtual SecretStatus remove(const SecretKey& key) = 0;
  /// `found` when the item was stored.
  virtual SecretStatus add(const SecretKey& key, const std::string& bytes) = 0;
};

}  // namespace tarnwick
