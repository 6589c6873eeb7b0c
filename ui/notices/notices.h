#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "core/controller/desktop_controller.h"
#include "core/controller/desktop_notifications.h"
#include "ui/common/render_scheduler.h"

namespace tarnwick {

/// Lets the desktop tell how a launch or an installation ended while the user looks elsewhere. What
/// the user ended is not told. Everything it is given outlives it; interface thread.
class Notices {
 public:
  /// `clicked` is to open the main window; `isInFront` tells whether a window of ours has the
  /// user's attention.
  Notices(DesktopController& controller, DesktopNotifications& notifications,
          DesktopNotifications::Clicked clicked, std::function<bool()> isInFront);

  /// To be called when the answer of `isInFront` may have changed: what is seen needs no message.
  void attentionChanged();

 private:
  struct Run {
    std::string earlierConflict;  ///< id of one that was there before; empty without one
    bool installing = false;      ///< as long as it was under way
    bool renderedInstalling = false;
  };
  void note();
  void render();
  void tellEnd(const Run& run);
  void tell(const std::string& title, const std::string& text);

  DesktopController& controller_;
  DesktopNotifications& notifications_;
  DesktopNotifications::Clicked clicked_;
  std::function<bool()> isInFront_;
  std::optional<Run> run_;
  RenderScheduler scheduler_;
  std::shared_ptr<void> observation_;
};

}  // namespace tarnwick
