#include "ui/logs_window/logs_window.h"

#include <QCheckBox>
#include <QEvent>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QPushButton>
#include <QShortcut>
#include <QSpacerItem>
#include <QVBoxLayout>

#include "core/files/atomic_file.h"
#include "ui/common/accessible_role.h"
#include "ui/common/buttons.h"
#include "ui/common/clipboard.h"
#include "ui/common/separator.h"

namespace tarnwick {
namespace {

constexpr QSize smallestSize(560, 360);
constexpr QSize firstSize(760, 520);
constexpr int toolbarPadding = 10;

}  // namespace

LogsWindow::LogsWindow(LogsWindowServices services)
    : services_(services),
      toolbar_(makeToolbar()),
      view_(new LogView),
      feed_(services.docker, services.mainThread, [this] { render(); }) {
  setAttribute(Qt::WA_DeleteOnClose);
  setWindowTitle(QStringLiteral("Logs"));
  setAccessibleRole(*this, QAccessible::Window);
  view_->setAccessibleName(QStringLiteral("Log of the desktop's container"));

  auto* column = new QVBoxLayout;
  column->setSpacing(0);
  column->addWidget(toolbar_);
  column->addWidget(new Separator);
  column->addWidget(view_, 1);
  auto* grid = new QGridLayout(this);
  grid->setContentsMargins(0, 0, 0, 0);
  // Holds the window open; with large fonts the toolbar asks for more.
  grid->addItem(new QSpacerItem(smallestSize.width(), smallestSize.height(), QSizePolicy::Minimum,
                                QSizePolicy::Minimum),
                0, 0);
  grid->addLayout(column, 0, 0);
  resize(firstSize);

  auto* closing = new QShortcut(QKeySequence::Close, this);
  connect(closing, &QShortcut::activated, this, &QWidget::close);
  render();
}

QWidget* LogsWindow::makeToolbar() {
  auto* toolbar = new QWidget;
  auto* refresh = new PlainButton(QStringLiteral("Refresh"));
  auto* follow = new QCheckBox(QStringLiteral("Follow"));
  auto* copy = new PlainButton(QStringLiteral("Copy"));
  auto* save = new PlainButton(QStringLiteral("Save…"));
  follow->setAccessibleDescription(QStringLiteral("Refreshes every 2 seconds"));
  auto* row = new QHBoxLayout(toolbar);
  row->setContentsMargins(toolbarPadding, toolbarPadding, toolbarPadding, toolbarPadding);
  row->addWidget(refresh);
  row->addWidget(follow);
  row->addStretch();
  row->addWidget(copy);
  row->addWidget(save);
  connect(refresh, &QPushButton::clicked, this, [this] { feed_.refresh(); });
  connect(follow, &QCheckBox::toggled, this, [this](bool on) { feed_.setFollow(on); });
  connect(copy, &QPushButton::clicked, this, [this] { copyText(text()); });
  connect(save, &QPushButton::clicked, this, [this] { this->save(); });
  outlineControls(*toolbar);
  return toolbar;
}

bool LogsWindow::event(QEvent* event) {
  const bool handled = QWidget::event(event);
  if (event->type() == QEvent::ApplicationPaletteChange) outlineControls(*toolbar_);
  return handled;
}

void LogsWindow::render() {
  view_->showText(text(), feed_.follows() ? LogView::Scroll::toEnd : LogView::Scroll::stay);
}

void LogsWindow::save() {
  PanelOptions options;
  options.proposedName = QStringLiteral("tarnwick-logs.txt");
  services_.dialogs.saveFile(this, options, [this](const std::optional<QString>& path) {
    if (!path) return;
    // A disk can take its time, and the window may be closed meanwhile. Nothing is told of a
    // failure: the file then keeps its old content.
    services_.workers.run([path = path->toStdString(), bytes = feed_.text()] {
      static_cast<void>(writeFileAtomically(path, bytes));
    });
  });
}

QString LogsWindow::text() const {
  return QString::fromStdString(feed_.text());
}

}  // namespace tarnwick
