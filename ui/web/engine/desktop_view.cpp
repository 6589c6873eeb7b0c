#include "ui/web/engine/desktop_view.h"

#include <QtCore/QTimer>
#include <QtWebEngineWidgets/QWebEngineView>

namespace tarnwick {

DesktopView::DesktopView(const QUrl& url, qint64 reloadToken, WebDesktopServices& services,
                         ProfileKeeper& keeper, QWidget* parent)
    : WebDesktopView(parent),
      services_(services),
      engineView_(new QWebEngineView(this)),
      notice_(new QLabel(tr("Connecting to the desktop…"), this)),
      navigation_(url, keeper,
                  {[this, &keeper] {
                     return keeper.profile(services_.storageFolder(), services_.cacheFolder());
                   },
                   [this](DesktopPage& page) { engineView_->setPage(&page); },
                   [this](Navigation::Scene scene) {
                     notice_->setVisible(scene == Navigation::Scene::connecting);
                   }}),
      coordinator_(navigation_, *this) {
  setAccessibleName(tr("Linux desktop"));
  engineView_->setAccessibleName(tr("Linux desktop"));
  setFocusProxy(engineView_);
  notice_->setAlignment(Qt::AlignCenter);
  notice_->setAutoFillBackground(true);
  notice_->raise();
  navigation_.open(coordinator_);
  coordinator_.start(url.toString(QUrl::FullyEncoded).toStdString(), reloadToken);
}

DesktopView::~DesktopView() = default;

void DesktopView::updateView(qint64 reloadToken) {
  coordinator_.update(reloadToken);
}

void DesktopView::resizeEvent(QResizeEvent* event) {
  WebDesktopView::resizeEvent(event);
  engineView_->setGeometry(rect());
  notice_->setGeometry(rect());
}

bool DesktopView::requirePassword() {
  return services_.requirePassword();
}

std::optional<std::string> DesktopView::password() {
  const auto password = services_.password();
  if (!password) return std::nullopt;
  return password->toStdString();
}

void DesktopView::after(std::chrono::milliseconds delay, std::function<void()> work) {
  QTimer::singleShot(delay, this, std::move(work));
}

void DesktopView::openInBrowser(const std::string& url) {
  services_.openUrl(QUrl::fromEncoded(QByteArray::fromStdString(url)));
}

std::optional<std::string> DesktopView::askSavePath(const std::string& suggestedName) {
  const auto path = services_.askSavePath(this, QString::fromStdString(suggestedName));
  if (!path) return std::nullopt;
  return path->toStdString();
}

std::vector<std::string> DesktopView::chooseFiles(UploadOptions options) {
  std::vector<std::string> paths;
  for (const QString& path :
       services_.chooseFiles(this, options.allowsMultipleSelection, options.canChooseDirectories))
    paths.push_back(path.toStdString());
  return paths;
}

std::optional<int> DesktopView::showMessage(const std::string& message,
                                            const std::vector<std::string>& buttons) {
  QStringList titles;
  for (const std::string& button : buttons) titles.append(QString::fromStdString(button));
  return services_.showMessage(this, QString::fromStdString(message), titles);
}

}  // namespace tarnwick
