#include "ui/home/home_texts.h"

#include <algorithm>

namespace tarnwick {

QString primaryTitle(const DesktopController& controller) {
  switch (controller.phase.get()) {
    case Phase::idle:
      return controller.settings.hasLaunchedCurrent() ? QStringLiteral("Open desktop")
                                                      : QStringLiteral("Launch Linux");
    case Phase::busy:
      return controller.installing.get() ? QStringLiteral("Installing…")
                                         : QStringLiteral("Starting…");
    case Phase::running:
      break;
  }
  return QStringLiteral("Open desktop");
}

bool showsProgress(const DesktopController& controller) {
  const auto& stages = controller.stages.get();
  return controller.phase.get() == Phase::busy ||
         std::any_of(stages.begin(), stages.end(),
                     [](const Stage& stage) { return stage.state != StageState::pending; });
}

QString firstRunText(const DesktopController& controller) {
  if (controller.phase.get() != Phase::idle || controller.settings.hasLaunchedCurrent()) return {};
  const Flavor* flavor = Flavor::find(controller.settings.flavorID.get());
  const QString size = flavor ? QString::fromStdString(flavor->sizeText) : QStringLiteral("1 GB");
  return QStringLiteral("Downloads about ") + size +
         QStringLiteral(" once, then starts in a few seconds. Nothing to type.");
}

QString installHint(const DesktopController& controller) {
  if (controller.phase.get() != Phase::idle || controller.toolsInstalled()) return {};
  return QStringLiteral(
      "Colima and Docker are not installed. The button will offer to install them.");
}

}  // namespace tarnwick
