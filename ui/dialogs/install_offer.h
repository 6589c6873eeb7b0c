#pragma once

#include <QWidget>

#include "core/controller/desktop_controller.h"

namespace tarnwick {

/// Asks over the window of `parent` whether to install the tools with Homebrew, and does what the
/// user answers. To be called while the controller's `askInstall` is set, which closing the offer
/// by any means clears. Nothing while the offer is shown already. Returns at once.
void showInstallOffer(QWidget* parent, DesktopController& controller);

}  // namespace tarnwick
