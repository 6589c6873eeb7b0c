#include "ui/settings_window/settings_window.h"

#include <QEvent>
#include <QGridLayout>
#include <QGuiApplication>
#include <QShortcut>
#include <QSpacerItem>

#include "ui/common/accessible_role.h"
#include "ui/settings_window/computer_sections.h"
#include "ui/settings_window/machine_sections.h"
#include "ui/settings_window/maintenance_section.h"
#include "ui/settings_window/page_scroll.h"
#include "ui/settings_window/password_section.h"

namespace tarnwick {
namespace {

constexpr QSize smallestSize(560, 600);
constexpr QSize firstSize(620, 760);

}  // namespace

SettingsWindow::SettingsWindow(SettingsWindowServices services) : scheduler_([this] { render(); }) {
  setAttribute(Qt::WA_DeleteOnClose);
  setWindowTitle(QStringLiteral("Settings"));
  setAccessibleRole(*this, QAccessible::Window);
  auto* grid = new QGridLayout(this);
  grid->setContentsMargins(0, 0, 0, 0);
  // Holds the window open; with large fonts the page asks for more.
  grid->addItem(new QSpacerItem(smallestSize.width(), smallestSize.height(), QSizePolicy::Minimum,
                                QSizePolicy::Minimum),
                0, 0);
  grid->addWidget(new PageScroll(makePage(services)), 0, 0);
  resize(firstSize);

  auto* closing = new QShortcut(QKeySequence::Close, this);
  connect(closing, &QShortcut::activated, this, &QWidget::close);
  render();
  scheduler_.observe(services.controller.changes());
  scheduler_.observe(services.controller.settings.changes());
}

QWidget* SettingsWindow::makePage(SettingsWindowServices services) {
  DesktopController& controller = services.controller;
  SettingsStore& settings = controller.settings;
  const SecretClipboard clipboard(*QGuiApplication::clipboard(), services.mainThread);
  const auto reveal = [&workspace = services.workspace, &paths = services.paths] {
    workspace.revealFolder(paths.supportDir());
  };
  sections_ = {new DesktopSection(controller),
               new ColimaSection(controller),
               new PortsSection(settings),
               new PasswordSection(settings, clipboard),
               new FolderSection(settings, services.dialogs),
               new StartupSection(controller),
               new MaintenanceSection(controller, services.dialogs, reveal),
               new AboutSection(controller)};
  auto* page = new QWidget;
  auto* column = new QVBoxLayout(page);
  column->setContentsMargins(20, 20, 20, 20);
  column->setSpacing(18);
  for (SettingsSection* section : sections_) column->addWidget(section);
  column->addStretch();
  return page;
}

bool SettingsWindow::event(QEvent* event) {
  // Tools may have been installed or removed while the user was elsewhere.
  if (event->type() == QEvent::WindowActivate) scheduler_.request();
  return QWidget::event(event);
}

void SettingsWindow::render() {
  for (SettingsSection* section : sections_) section->render();
}

}  // namespace tarnwick
