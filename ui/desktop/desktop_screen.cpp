#include "ui/desktop/desktop_screen.h"

#include <QApplication>
#include <QHBoxLayout>
#include <QUrl>
#include <QVBoxLayout>

#include "ui/common/separator.h"
#include "ui/common/text_label.h"
#include "ui/desktop/full_screen.h"

namespace tarnwick {
namespace {

QWidget* makeMessage(const QString& text) {
  auto* area = new QWidget;
  auto* layout = new QVBoxLayout(area);
  layout->setContentsMargins(16, 16, 16, 16);
  auto* label = new TextLabel(text, FontRole::body);
  label->setAlignment(Qt::AlignCenter);
  layout->addWidget(label);
  return area;
}

}  // namespace

DesktopScreen::DesktopScreen(DesktopController& controller, WindowOpener& windows,
                             WebDesktopServices& services, const WebModuleSource& source,
                             QWidget* parent)
    : QWidget(parent),
      controller_(controller),
      windows_(windows),
      services_(services),
      popover_(new KeysPopover(this)),
      scheduler_([this] { render(); }) {
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(0);
  column->addWidget(makeToolbar());
  column->addWidget(new Separator);
  column->addWidget(makeContent(source), 1);
  scheduler_.observe(controller.changes());
}

QWidget* DesktopScreen::makeToolbar() {
  auto* bar = new QWidget;
  auto* row = new QHBoxLayout(bar);
  row->setContentsMargins(12, 6, 12, 6);
  row->setSpacing(14);
  const auto add = [&](const QString& title, Symbol symbol, std::function<void()> action) {
    auto* button = new ToolbarButton(title, symbol);
    QObject::connect(button, &QToolButton::clicked, this, std::move(action));
    row->addWidget(button);
    return button;
  };
  add(QStringLiteral("Fullscreen"), Symbol::arrowsOut,
      [] { toggleFullScreen(QApplication::activeWindow()); });
  add(QStringLiteral("Reload"), Symbol::arrowClockwise, [this] { controller_.reloadDesktop(); });
  add(QStringLiteral("Open in browser"), Symbol::compass, [this] { openInBrowser(); });
  add(QStringLiteral("Logs"), Symbol::docText, [this] { windows_.openWindow(logsWindowId); });
  add(QStringLiteral("Stop"), Symbol::stopFill, [this] { controller_.stop(); });
  row->addStretch(1);
  add(QStringLiteral("Home"), Symbol::house, [this] { controller_.showHome(); });
  keys_ = add(QStringLiteral("Keys"), Symbol::keyboard, [this] { toggleKeys(); });
  return bar;
}

QWidget* DesktopScreen::makeContent(const WebModuleSource& source) {
  const auto address = controller_.desktopURL();
  if (!address) {
    return makeMessage(
        QStringLiteral("The desktop address is invalid. Check the ports in Settings."));
  }
  const WebModule web = source();
  if (!web.module) return makeMessage(web.error);
  view_ = web.module->makeView(QUrl(QString::fromStdString(*address)),
                               controller_.reloadToken.get(), services_, this);
  view_->setAccessibleName(QStringLiteral("Linux desktop"));
  return view_;
}

void DesktopScreen::focusContent() {
  if (view_) {
    view_->setFocus(Qt::OtherFocusReason);
  } else {
    keys_->setFocus(Qt::OtherFocusReason);
  }
}

void DesktopScreen::render() {
  if (view_) view_->updateView(controller_.reloadToken.get());
}

void DesktopScreen::openInBrowser() {
  const auto address = controller_.desktopURL();
  if (address) services_.openUrl(QUrl(QString::fromStdString(*address)));
}

void DesktopScreen::toggleKeys() {
  if (popover_->isVisible()) {
    popover_->close();
  } else {
    popover_->openUnder(*keys_);
  }
}

}  // namespace tarnwick
