#pragma once

#include <QWidget>

#include "core/controller/desktop_controller.h"
#include "ui/common/dialog_service.h"

namespace tarnwick {

/// Asks whether to delete the current flavor's container and volume, saying what will be lost, and
/// does so when the user agrees. Returns at once.
void confirmRemoveFlavor(QWidget* parent, DesktopController& controller, DialogService& dialogs);

}  // namespace tarnwick
