#include "ui/dialogs/install_offer.h"

#include <QVariant>

#include "ui/common/dialog_service.h"

namespace tarnwick {
namespace {

constexpr const char* shownProperty = "installOfferShown";

}  // namespace

void showInstallOffer(QWidget* parent, DesktopController& controller) {
  if (parent->property(shownProperty).toBool()) return;
  parent->setProperty(shownProperty, true);

  Confirmation offer;
  offer.title = QStringLiteral("Install Colima and Docker?");
  offer.message = QStringLiteral(
      "This runs “brew install colima docker” with Homebrew. It downloads a few hundred MB and "
      "does not need a password.");
  offer.confirmTitle = QStringLiteral("Install");
  QtDialogService().confirm(parent, offer, [parent, &controller](bool agreed) {
    parent->setProperty(shownProperty, false);
    controller.dismissInstallOffer();
    if (agreed) controller.confirmInstall();
  });
}

}  // namespace tarnwick
