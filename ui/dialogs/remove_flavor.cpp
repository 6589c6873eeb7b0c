#include "ui/dialogs/remove_flavor.h"

namespace tarnwick {

void confirmRemoveFlavor(QWidget* parent, DesktopController& controller, DialogService& dialogs) {
  const Flavor& flavor = controller.currentFlavor();
  Confirmation question;
  question.title = QStringLiteral("Remove %1?").arg(QString::fromStdString(flavor.name));
  question.message =
      QStringLiteral(
          "This deletes the container “tarnwick” (if it runs this flavor) and the volume “%1” with "
          "every file in that desktop's home folder. Other flavors are not touched.")
          .arg(QString::fromStdString(flavor.volumeName()));
  question.confirmTitle = QStringLiteral("Delete container and volume");
  question.kind = ConfirmationKind::destructive;
  dialogs.confirm(parent, question, [&controller](bool agreed) {
    if (agreed) controller.removeFlavor(controller.currentFlavor());
  });
}

}  // namespace tarnwick
