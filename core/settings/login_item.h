#pragma once

namespace tarnwick {

/// The application's own entry among the programs that start at login. Calls are quick (small
/// files); errors show in `isEnabled` only. Main thread.
class LoginItem {
 public:
  LoginItem() = default;
  LoginItem(const LoginItem&) = delete;
  LoginItem& operator=(const LoginItem&) = delete;
  virtual ~LoginItem() = default;

  virtual void registerItem() = 0;
  virtual void unregisterItem() = 0;
  [[nodiscard]] virtual bool isEnabled() const = 0;
};

}  // namespace tarnwick
