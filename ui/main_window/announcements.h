#pragma once

#include <QString>

#include "core/controller/desktop_controller.h"
#include "ui/common/announcer.h"

namespace tarnwick {

/// Tells assistive tools of what a sighted person sees change: errors, notices, the phase.
class Announcements {
 public:
  /// The present state is taken as known.
  Announcements(DesktopController& controller, Announcer& announcer);
  void render();

 private:
  struct Known {
    QString error;
    QString notice;
    QString status;
  };
  [[nodiscard]] Known present() const;

  DesktopController& controller_;
  Announcer& announcer_;
  Known known_;
};

}  // namespace tarnwick
