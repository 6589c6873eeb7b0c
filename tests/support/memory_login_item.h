#pragma once

#include "core/settings/login_item.h"

namespace tarnwick {

/// A login item in memory, which can be made to ignore requests.
class MemoryLoginItem final : public LoginItem {
 public:
  bool enabled = false;
  bool heedsRequests = true;

  void registerItem() override { enabled = enabled || heedsRequests; }
  void unregisterItem() override { enabled = enabled && !heedsRequests; }
  [[nodiscard]] bool isEnabled() const override { return enabled; }
};

}  // namespace tarnwick
