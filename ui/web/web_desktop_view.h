#pragma once

#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtCore/QUrl>
#include <QtCore/QtPlugin>
#include <QtWidgets/QWidget>
#include <optional>

namespace tarnwick {

/// What the program does for a desktop view. Called on the interface thread. The dialogs are modal
/// and return when the user has answered; what they show comes from the page and is plain text.
class WebDesktopServices {
 public:
  WebDesktopServices() = default;
  WebDesktopServices(const WebDesktopServices&) = delete;
  WebDesktopServices& operator=(const WebDesktopServices&) = delete;
  virtual ~WebDesktopServices() = default;

  /// The stored choice and the stored password, both asked for at each sign-in. The answer is
  /// needed at once, so these must not wait for anything.
  [[nodiscard]] virtual bool requirePassword() = 0;
  [[nodiscard]] virtual std::optional<QString> password() = 0;

  /// Opens the address in the user's default browser.
  virtual void openUrl(const QUrl& url) = 0;

  /// The file to save to, or nothing when the user cancelled.
  virtual std::optional<QString> askSavePath(QWidget* parent, const QString& suggestedName) = 0;
  /// The chosen files, or none when the user cancelled.
  virtual QStringList chooseFiles(QWidget* parent, bool allowsMultipleSelection,
                                  bool allowsDirectories) = 0;
  /// The index of the button that closed the message, or nothing when it was closed otherwise.
  virtual std::optional<int> showMessage(QWidget* parent, const QString& text,
                                         const QStringList& buttons) = 0;

  /// The engine's own folders below the user's data and cache folders. Read once.
  [[nodiscard]] virtual QString storageFolder() = 0;
  [[nodiscard]] virtual QString cacheFolder() = 0;
};

/// The Linux desktop's page in a widget. It loads its address once, when it is made. Without a meta
/// object of its own, since program and module would each have one.
class WebDesktopView : public QWidget {
 public:
  using QWidget::QWidget;

  /// A token that differs from the last one reloads the page past all caches.
  virtual void updateView(qint64 reloadToken) = 0;
};

/// The module with the web engine. Interface thread only; lives until the process ends.
class WebDesktopModule {
 public:
  WebDesktopModule() = default;
  WebDesktopModule(const WebDesktopModule&) = delete;
  WebDesktopModule& operator=(const WebDesktopModule&) = delete;
  virtual ~WebDesktopModule() = default;

  /// The view loads `url` at once; `reloadToken` counts as already acted on. The services outlive
  /// the view; the view belongs to `parent`.
  virtual WebDesktopView* makeView(const QUrl& url, qint64 reloadToken,
                                   WebDesktopServices& services, QWidget* parent) = 0;

  /// The password goes only to the holder of the first certificate that a desktop showed. To be
  /// called whenever the program itself has started the container, which may have a new one.
  virtual void forgetCertificate() = 0;

  /// The versions of the engine and of the browser that it is made from, for reports.
  [[nodiscard]] virtual QString engineVersion() const = 0;
};

}  // namespace tarnwick

Q_DECLARE_INTERFACE(tarnwick::WebDesktopModule, "tarnwick.WebDesktopModule/1")
