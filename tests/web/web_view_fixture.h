#pragma once

#include <QtCore/QTemporaryDir>
#include <QtWidgets/QWidget>
#include <chrono>
#include <functional>
#include <gtest/gtest.h>
#include <memory>
#include <optional>
#include <string>

#include "tests/web/https_server.h"
#include "ui/web/web_desktop_view.h"
#include "ui/web/web_module_loader.h"

namespace tarnwick {

/// "linux" and "secret" as a Basic sign-in sends them.
inline constexpr char signIn[] = "Basic bGludXg6c2VjcmV0";

/// A user with prepared answers.
class Services : public WebDesktopServices {
 public:
  Services(const QString& storage, const QString& cache) : storage_(storage), cache_(cache) {}

  bool requirePassword() override { return required; }
  std::optional<QString> password() override { return stored; }
  void openUrl(const QUrl& url) override { opened.append(url.toString()); }
  std::optional<QString> askSavePath(QWidget* parent, const QString& suggestedName) override;
  QStringList chooseFiles(QWidget* parent, bool allowsMultipleSelection,
                          bool allowsDirectories) override;
  std::optional<int> showMessage(QWidget* parent, const QString& text,
                                 const QStringList& buttons) override;
  QString storageFolder() override { return storage_; }
  QString cacheFolder() override { return cache_; }

  bool required = true;
  std::optional<QString> stored = QStringLiteral("secret");
  QStringList opened;
  std::optional<QString> savePath;
  QStringList suggestedNames;
  QStringList files;
  std::optional<bool> askedForMultiple;
  QStringList messages;
  std::optional<int> pressed;
  /// Runs while a message is open.
  std::function<void()> meanwhile;

 private:
  QString storage_;
  QString cache_;
};

/// A view from the real module, and a server of our own for it.
class WebViewTest : public testing::Test {
 protected:
  void SetUp() override;
  void TearDown() override;

  /// Shows the server's root in a fresh view.
  void open(const std::string& host = "127.0.0.1");
  void open(const QUrl& url);
  /// Serves `body` as the page at the root, and an empty page for all else.
  void serve(const std::string& body);
  void serve(HttpsServer::Handler handler, int port = 0);
  void reload() { view_->updateView(++token_); }
  void close();

  /// Whether the quiet notice covers the page.
  [[nodiscard]] bool isConnecting() const;
  static bool eventually(const std::function<bool()>& condition,
                         std::chrono::seconds limit = std::chrono::seconds(15));
  /// Lets everything run for a while, for what must not happen.
  static void pause(std::chrono::milliseconds time);

  QTemporaryDir folder_;
  WebModuleLoader loader_;
  Identity identity_;
  std::unique_ptr<HttpsServer> server_;
  std::unique_ptr<Services> services_;
  QWidget window_;
  WebDesktopView* view_ = nullptr;
  qint64 token_ = 0;
};

/// The answer for a page; what it runs may report by fetching from the server.
[[nodiscard]] Answer page(const std::string& body);

}  // namespace tarnwick
