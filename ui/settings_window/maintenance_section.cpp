#include "ui/settings_window/maintenance_section.h"

#include <QApplication>
#include <utility>

#include "ui/common/buttons.h"
#include "ui/dialogs/remove_flavor.h"
#include "ui/settings_window/flow_layout.h"
#include "ui/settings_window/maintenance_rule.h"

namespace tarnwick {
namespace {

constexpr const char* maintainersDomain = "linuxserver.io";

FlowLayout* addRow(QVBoxLayout& rows) {
  auto* row = new QWidget;
  auto* items = new FlowLayout;
  row->setLayout(items);
  rows.addWidget(row);
  return items;
}

}  // namespace

MaintenanceSection::MaintenanceSection(DesktopController& controller, DialogService& dialogs,
                                       std::function<void()> revealAppFolder)
    : SettingsSection(QStringLiteral("Maintenance")),
      controller_(controller),
      update_(new PlainButton(QStringLiteral("Update image and recreate"))),
      apply_(new PlainButton(QStringLiteral("Apply settings now"))),
      remove_(new PlainButton(QStringLiteral("Remove this flavor…"))) {
  FlowLayout* rebuilding = addRow(rows());
  rebuilding->addWidget(update_);
  rebuilding->addWidget(apply_);
  addCaption(
      QStringLiteral("Update pulls the newest image for this flavor and recreates the container. "
                     "The data volume is kept."));
  auto* reveal = new PlainButton(QStringLiteral("Reveal app folder"));
  FlowLayout* folders = addRow(rows());
  folders->addWidget(reveal);
  folders->addWidget(remove_);
  notice_ = addCaption();
  lookDestructive();

  connect(update_, &QPushButton::clicked, this, [this] { controller_.update(); });
  connect(apply_, &QPushButton::clicked, this, [this] { controller_.applySettings(); });
  connect(reveal, &QPushButton::clicked, this, std::move(revealAppFolder));
  connect(remove_, &QPushButton::clicked, this,
          [this, &dialogs] { confirmRemoveFlavor(window(), controller_, dialogs); });
}

bool MaintenanceSection::event(QEvent* event) {
  const bool handled = SettingsSection::event(event);
  if (event->type() == QEvent::ApplicationPaletteChange) lookDestructive();
  return handled;
}

void MaintenanceSection::lookDestructive() {
  const QColor red = colorFor(ColorRole::red, QApplication::palette());
  QPalette changed = remove_->palette();
  for (const auto group : {QPalette::Active, QPalette::Inactive}) {
    changed.setColor(group, QPalette::WindowText, red);
  }
  remove_->setPalette(changed);
}

void MaintenanceSection::render() {
  const bool allowed = allowsMaintenance(controller_);
  for (QPushButton* button : {update_, apply_, remove_}) button->setEnabled(allowed);
  const std::optional<std::string>& notice = controller_.notice.get();
  notice_->setText(notice ? QString::fromStdString(*notice) : QString());
  notice_->setVisible(notice.has_value());
}

AboutSection::AboutSection(DesktopController& controller)
    : SettingsSection(QStringLiteral("About")), controller_(controller) {
  const auto add = [this](const QString& text, ColorRole color) {
    auto* label = new TextLabel(text, FontRole::callout, color);
    rows().addWidget(label);
    return label;
  };
  add(QStringLiteral("Tarnwick runs a webtop desktop from %1 (%2/linuxserver/webtop) in a Docker "
                     "container on Colima. Nothing leaves your Mac except the image download. The "
                     "container's ports are bound to 127.0.0.1 only.")
          .arg(QLatin1String(maintainersDomain),
               QString::fromStdString(controller.imageRegistry())),
      ColorRole::primary);
  image_ = add(QString(), ColorRole::secondary);
  add(QStringLiteral("The window loads the https page on port 3001 with a self-signed certificate, "
                     "which this app accepts only for 127.0.0.1."),
      ColorRole::secondary);
}

void AboutSection::render() {
  image_->setText(
      QStringLiteral(
          "The image is pulled by flavor tag (for example “%1”). The documented version tags are "
          "build hashes that change with every release, so the app does not pin one and you get "
          "the current build at download or Update.")
          .arg(QString::fromStdString(controller_.currentFlavor().tag)));
}

}  // namespace tarnwick
