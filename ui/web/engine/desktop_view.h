#pragma once

#include <QtWidgets/QLabel>

#include "ui/web/engine/navigation.h"
#include "ui/web/rules/coordinator.h"
#include "ui/web/web_desktop_view.h"

class QWebEngineView;

namespace tarnwick {

/// The desktop's page, under a quiet notice while there is none.
class DesktopView : public WebDesktopView, private WebHostPort {
  Q_OBJECT

 public:
  /// Keeper and services outlive the view.
  DesktopView(const QUrl& url, qint64 reloadToken, WebDesktopServices& services,
              ProfileKeeper& keeper, QWidget* parent);
  ~DesktopView() override;

  void updateView(qint64 reloadToken) override;

 protected:
  void resizeEvent(QResizeEvent* event) override;

 private:
  bool requirePassword() override;
  std::optional<std::string> password() override;
  void after(std::chrono::milliseconds delay, std::function<void()> work) override;
  void openInBrowser(const std::string& url) override;
  std::optional<std::string> askSavePath(const std::string& suggestedName) override;
  std::vector<std::string> chooseFiles(UploadOptions options) override;
  std::optional<int> showMessage(const std::string& message,
                                 const std::vector<std::string>& buttons) override;

  WebDesktopServices& services_;
  QWebEngineView* engineView_;
  QLabel* notice_;
  Navigation navigation_;
  Coordinator coordinator_;
};

}  // namespace tarnwick
