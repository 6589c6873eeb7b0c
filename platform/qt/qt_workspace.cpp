#include "platform/qt/qt_workspace.h"

#include <QDesktopServices>
#include <QString>
#include <QUrl>

#include "platform/time_zone.h"

namespace tarnwick {

void QtWorkspace::openUrl(const std::string& url) {
  QDesktopServices::openUrl(QUrl(QString::fromStdString(url), QUrl::StrictMode));
}

void QtWorkspace::revealFolder(const std::string& path) {
  QDesktopServices::openUrl(QUrl::fromLocalFile(QString::fromStdString(path)));
}

std::string QtWorkspace::timeZone() const {
  return currentTimeZoneName();
}

}  // namespace tarnwick
