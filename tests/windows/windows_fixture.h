#pragma once

#include <QAbstractButton>
#include <QAccessible>
#include <QApplication>
#include <QEventLoop>
#include <QLabel>
#include <QTest>
#include <QTimer>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "tests/support/controller_harness.h"
#include "ui/common/dialog_service.h"
#include "ui/common/window_opener.h"

namespace tarnwick {

/// Answers every question and panel at once, and remembers what was asked.
class ScriptedDialogs final : public DialogService {
 public:
  bool agrees = false;
  std::optional<QString> path;
  std::vector<Confirmation> questions;
  std::vector<PanelOptions> panels;

  void confirm(QWidget*, const Confirmation& question, std::function<void(bool)> done) override {
    questions.push_back(question);
    done(agrees);
  }
  void tell(QWidget*, const QString&, const QString&, std::function<void()> done) override {
    if (done) done();
  }
  void chooseFolder(QWidget*, const PanelOptions& options,
                    std::function<void(std::optional<QString>)> done) override {
    panels.push_back(options);
    done(path);
  }
  void openFiles(QWidget*, const PanelOptions&, OpenKind,
                 std::function<void(QStringList)> done) override {
    done({});
  }
  void saveFile(QWidget*, const PanelOptions& options,
                std::function<void(std::optional<QString>)> done) override {
    panels.push_back(options);
    done(path);
  }
};

class RecordingWindows final : public WindowOpener {
 public:
  std::vector<std::string> opened;
  void openWindow(const std::string& id) override { opened.push_back(id); }
};

/// A controller on virtual time under real windows.
class WindowsWorld : public ControllerHarness {
 public:
  ScriptedDialogs dialogs;
  RecordingWindows windows;

  /// Lets the controller do what it can without time passing, and the windows redraw: twice, since
  /// redraws are at most about 60 a second.
  void settle() {
    mainThread.advance(Duration::zero());
    for (int i = 0; i < 2; ++i) {
      QEventLoop loop;
      QTimer::singleShot(20, &loop, &QEventLoop::quit);
      loop.exec();
    }
    // Windows that were closed outside of an event loop.
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    mainThread.advance(Duration::zero());
  }
};

/// The widget of this class, shown or not, with this text or accessible name; null without one.
template <typename Widget = QAbstractButton>
Widget* named(const QWidget& root, const QString& name) {
  for (auto* widget : root.findChildren<Widget*>()) {
    if (widget->accessibleName() == name) return widget;
    if constexpr (std::is_base_of_v<QAbstractButton, Widget>) {
      if (widget->text() == name) return widget;
    }
  }
  return nullptr;
}

/// As named, but null when it is not on show.
template <typename Widget = QAbstractButton>
Widget* shown(const QWidget& root, const QString& name) {
  Widget* widget = named<Widget>(root, name);
  return widget != nullptr && widget->isVisible() ? widget : nullptr;
}

/// The texts of all labels on show.
inline QStringList shownTexts(const QWidget& root) {
  QStringList texts;
  for (const QLabel* label : root.findChildren<QLabel*>()) {
    if (label->isVisible()) texts << label->text();
  }
  return texts;
}

/// The user's font, larger for as long as this object lives.
class LargerFont {
 public:
  explicit LargerFont(double factor) : before_(QApplication::font()) {
    QFont larger = before_;
    larger.setPointSizeF(before_.pointSizeF() * factor);
    QApplication::setFont(larger);
  }
  LargerFont(const LargerFont&) = delete;
  LargerFont& operator=(const LargerFont&) = delete;
  ~LargerFont() { QApplication::setFont(before_); }

 private:
  QFont before_;
};

/// What is cut or has no room in a window: a sentence for each such widget.
inline QStringList cutWidgets(const QWidget& root) {
  QStringList faults;
  for (const QWidget* widget : root.findChildren<QWidget*>()) {
    if (!widget->isVisible() || widget->parentWidget() == nullptr) continue;
    const auto* label = qobject_cast<const QLabel*>(widget);
    const auto* button = qobject_cast<const QAbstractButton*>(widget);
    if (label == nullptr && button == nullptr) continue;
    const QString what = label != nullptr ? label->text() : button->text();
    if (!widget->parentWidget()->rect().contains(widget->geometry())) {
      faults << "outside: " + what;
    }
    const int needed = label != nullptr && label->wordWrap() ? label->heightForWidth(label->width())
                                                             : widget->sizeHint().height();
    if (widget->height() < needed) faults << "too low: " + what;
    if ((label == nullptr || !label->wordWrap()) && widget->width() < widget->sizeHint().width()) {
      faults << "too narrow: " + what;
    }
  }
  return faults;
}

/// The widgets that take the keyboard's focus and have no name for assistive tools.
inline QStringList namelessControls(const QWidget& root) {
  QStringList faults;
  for (QWidget* widget : root.findChildren<QWidget*>()) {
    if (widget->focusPolicy() == Qt::NoFocus || widget->objectName().startsWith("qt_")) continue;
    const QAccessibleInterface* accessible = QAccessible::queryAccessibleInterface(widget);
    if (accessible == nullptr || accessible->text(QAccessible::Name).isEmpty()) {
      faults << widget->metaObject()->className();
    }
  }
  return faults;
}

}  // namespace tarnwick
