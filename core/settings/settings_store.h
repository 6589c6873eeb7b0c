#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "core/async/published.h"
#include "core/async/task_scope.h"
#include "core/settings/key_value_store.h"
#include "core/settings/keychain.h"
#include "core/settings/login_item.h"
#include "core/settings/random_source.h"

namespace tarnwick {

/// A published value that every assignment also writes to the key-value store.
template <typename T>
class Setting {
 public:
  Setting(ChangeSignal& changes, KeyValueStore& store, std::string key, T initial);
  [[nodiscard]] const T& get() const { return value_.get(); }
  operator const T&() const { return value_.get(); }  // NOLINT(google-explicit-constructor)
  Setting& operator=(T value);

 private:
  KeyValueStore& store_;
  std::string key_;
  Published<T> value_;
};

/// What is known of where the desktop password lives.
enum class PasswordStorage {
  loading,      ///< the keychain has not answered yet
  keychain,     ///< the keychain answers; it holds the password if there is one
  sessionOnly,  ///< no keychain, or a locked one: a password lives until the program ends
};

/// Every choice of the user: published, and written at each change. Missing or mistyped values read
/// as the defaults. Nothing is range-checked here. Main thread only.
class SettingsStore {
 public:
  SettingsStore(KeyValueStore& store, Keychain& keychain, LoginItem& loginItem,
                RandomSource& random, MainThread& mainThread);
  SettingsStore(const SettingsStore&) = delete;
  SettingsStore& operator=(const SettingsStore&) = delete;
  ~SettingsStore();

 private:
  ChangeSignal changes_;

 public:
  Setting<std::string> flavorID;
  Setting<std::int64_t> cpu;     ///< CPUs of the VM
  Setting<std::int64_t> memory;  ///< memory of the VM, GB
  Setting<std::int64_t> disk;    ///< disk of the VM, GB
  Setting<std::int64_t> httpPort;
  Setting<std::int64_t> httpsPort;
  Setting<bool> stopColimaOnQuit;
  Setting<std::string> shareFolder;  ///< absolute path, or empty for none
  Setting<bool> colimaAtLogin;
  Setting<std::vector<std::string>> launchedFlavors;  ///< ids in the order first launched
  Published<bool> launchAtLogin;                      ///< what the login service reports
  Published<std::string> password;                    ///< empty when there is none
  Published<PasswordStorage> passwordStorage;

  [[nodiscard]] bool requirePassword() const;
  /// Turning it on with no password makes one, as soon as the keychain has answered that it has
  /// none. A keychain that does not show its items is asked once more; while it stays so the new
  /// password is for this session only and the keychain is left alone.
  void setRequirePassword(bool on);

  /// `shareFolder` when it is an existing folder.
  [[nodiscard]] std::optional<std::string> validSharePath() const;
  /// The password that the desktop is to be protected with: none when protection is off or the
  /// password is empty.
  [[nodiscard]] std::optional<std::string> activePassword() const;
  [[nodiscard]] bool hasLaunchedCurrent() const;

  void markLaunched(const std::string& id);
  void forgetLaunched(const std::string& id);
  void setLaunchAtLogin(bool on);
  /// Makes, publishes and stores a new password, whatever was there; `passwordStorage` tells, when
  /// the keychain has answered, whether it was stored.
  void regeneratePassword();
  /// Asks a keychain that was of no use when last asked once more, and does nothing otherwise. A
  /// new password that the user asked for is stored then. One that was made only since none could
  /// be read is stored when the keychain has none, and gives way to the keychain's own.
  void retryKeychain();

  /// Ends when no answer of the keychain is outstanding that `activePassword` depends on.
  Task<void> passwordLoaded();

  /// Announced before any of the published values changes.
  [[nodiscard]] ChangeSignal& changes() { return changes_; }

  /// The key-value store's key of `requirePassword` and `stopColimaOnQuit`, read elsewhere too.
  static constexpr const char* requirePasswordKey = "requirePassword";
  static constexpr const char* stopColimaOnQuitKey = "stopColimaOnQuit";
  /// The keychain account of the desktop password.
  static constexpr const char* passwordAccount = "webtop-password";

 private:
  struct Loading;
  void askForPassword();
  void storePassword();
  Task<void> loadPassword(unsigned question);
  void settlePassword(const SecretAnswer& answer);
  void endLoading();
  Task<void> keepPassword(std::string newPassword);

  KeyValueStore& store_;
  Keychain& keychain_;
  LoginItem& loginItem_;
  RandomSource& random_;
  MainThread& mainThread_;
  Published<bool> requirePassword_;
  std::unique_ptr<Loading> loading_;
  TaskScope tasks_;
};

}  // namespace tarnwick
