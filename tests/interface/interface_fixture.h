#pragma once

#include <QAbstractButton>
#include <QApplication>
#include <QEventLoop>
#include <QLabel>
#include <QTimer>
#include <chrono>
#include <memory>
#include <string>
#include <vector>

#include "tests/support/controller_harness.h"
#include "ui/common/window_opener.h"
#include "ui/web/web_desktop_view.h"

namespace tarnwick {

/// Runs the event loop for a while: long enough for two renders.
inline void runEventLoop(std::chrono::milliseconds duration = std::chrono::milliseconds(50)) {
  QEventLoop loop;
  QTimer::singleShot(duration, &loop, &QEventLoop::quit);
  loop.exec();
}

/// Remembers which windows were asked for.
class RecordingWindows final : public WindowOpener {
 public:
  std::vector<std::string> opened;
  void openWindow(const std::string& id) override { opened.push_back(id); }
};

/// A controller on virtual time under real widgets.
class InterfaceWorld : public ControllerHarness {
 public:
  RecordingWindows windows;

  /// Lets the controller do what it can without time passing, and the screens redraw.
  void settle() {
    mainThread.runPosted();
    runEventLoop();
    mainThread.runPosted();
  }
};

/// The button on show with exactly this title, or null.
inline QAbstractButton* findButton(const QWidget& root, const QString& title) {
  const auto buttons = root.findChildren<QAbstractButton*>();
  for (QAbstractButton* button : buttons) {
    if (button->isVisible() && button->text() == title) return button;
  }
  return nullptr;
}

/// The texts of all labels on show, in the order in which they were made.
inline std::vector<std::string> shownTexts(const QWidget& root) {
  std::vector<std::string> texts;
  const auto labels = root.findChildren<QLabel*>();
  for (const QLabel* label : labels) {
    if (label->isVisible()) texts.push_back(label->text().toStdString());
  }
  return texts;
}

template <typename Widget>
Widget* findShown(const QWidget& root) {
  const auto all = root.findChildren<QWidget*>();
  for (QWidget* widget : all) {
    auto* wanted = dynamic_cast<Widget*>(widget);
    if (wanted && wanted->isVisible()) return wanted;
  }
  return nullptr;
}

/// Answers nothing and remembers what a page asked for.
class RecordingWebServices final : public WebDesktopServices {
 public:
  std::vector<QUrl> opened;

  bool requirePassword() override { return false; }
  std::optional<QString> password() override { return std::nullopt; }
  void openUrl(const QUrl& url) override { opened.push_back(url); }
  std::optional<QString> askSavePath(QWidget*, const QString&) override { return std::nullopt; }
  QStringList chooseFiles(QWidget*, bool, bool) override { return {}; }
  std::optional<int> showMessage(QWidget*, const QString&, const QStringList&) override {
    return std::nullopt;
  }
  QString storageFolder() override { return {}; }
  QString cacheFolder() override { return {}; }
};

/// Views that show nothing and remember what they were told.
class FakeWebModule final : public WebDesktopModule {
 public:
  struct Made {
    QUrl url;
    qint64 firstToken = 0;
    std::vector<qint64> tokens;
    bool alive = true;
  };
  std::vector<std::shared_ptr<Made>> made;

  WebDesktopView* makeView(const QUrl& url, qint64 reloadToken, WebDesktopServices&,
                           QWidget* parent) override {
    auto record = std::make_shared<Made>();
    record->url = url;
    record->firstToken = reloadToken;
    made.push_back(record);
    return new View(record, parent);
  }
  void forgetCertificate() override {}
  [[nodiscard]] QString engineVersion() const override { return {}; }

 private:
  class View final : public WebDesktopView {
   public:
    View(std::shared_ptr<Made> record, QWidget* parent)
        : WebDesktopView(parent), record_(std::move(record)) {
      setFocusPolicy(Qt::StrongFocus);
    }
    ~View() override { record_->alive = false; }
    void updateView(qint64 token) override {
      const qint64 last = record_->tokens.empty() ? record_->firstToken : record_->tokens.back();
      if (token != last) record_->tokens.push_back(token);
    }

   private:
    std::shared_ptr<Made> record_;
  };
};

}  // namespace tarnwick
