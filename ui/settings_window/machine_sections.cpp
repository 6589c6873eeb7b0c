#include "ui/settings_window/machine_sections.h"

#include <QAbstractItemView>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>

#include "ui/common/buttons.h"
#include "ui/settings_window/maintenance_rule.h"

namespace tarnwick {
namespace {}  // namespace

DesktopSection::DesktopSection(DesktopController& controller)
    : SettingsSection(QStringLiteral("Desktop")),
      controller_(controller),
      flavor_(new FlavorPicker) {
  auto* title = new QLabel(QStringLiteral("Flavor"));
  title->setBuddy(flavor_);
  flavor_->view()->setAccessibleName(flavor_->accessibleName());
  auto* row = new QHBoxLayout;
  row->addWidget(title);
  row->addWidget(flavor_, 1);
  rows().addLayout(row);
  addCaption(QStringLiteral(
      "Selecting a flavor never deletes another flavor's data. Sizes are approximate."));
  connect(flavor_, &QComboBox::activated, this,
          [this](int index) { controller_.settings.flavorID = flavor_->flavorAt(index); });
}

void DesktopSection::render() {
  flavor_->showFlavor(controller_.settings.flavorID.get());
  flavor_->setEnabled(controller_.phase.get() == Phase::idle);
}

ColimaSection::ColimaSection(DesktopController& controller)
    : SettingsSection(QStringLiteral("Colima (the Linux VM)")), controller_(controller) {
  SettingsStore& settings = controller.settings;
  auto* steppers = new QVBoxLayout;  // all as wide as the widest
  auto* leading = new QHBoxLayout;
  leading->addLayout(steppers);
  leading->addStretch();
  rows().addLayout(leading);
  const auto addStepper = [&](Stepper::Kind kind, Setting<std::int64_t>& setting) {
    auto* stepper = new Stepper(std::move(kind));
    steppers->addWidget(stepper);
    connect(stepper, &Stepper::stepped, this, [stepper, &setting](int number) {
      setting = number;
      stepper->show(number);
    });
    return stepper;
  };
  const auto gigabytes = QStringLiteral(" GB");
  cpu_ = addStepper({QStringLiteral("CPUs"), QString(), 1, 16, 1}, settings.cpu);
  memory_ = addStepper({QStringLiteral("Memory"), gigabytes, 2, 32, 1}, settings.memory);
  disk_ = addStepper({QStringLiteral("Disk"), gigabytes, 10, 200, 5}, settings.disk);
  addCaption(
      QStringLiteral("Changes apply the next time Colima starts. The disk size only applies when "
                     "the VM is first created."));
  stop_ = new PlainButton(QStringLiteral("Stop Colima so new settings apply"));
  rows().addWidget(stop_, 0, Qt::AlignLeading);
  connect(stop_, &QPushButton::clicked, this, [this] { controller_.restartColima(); });
}

void ColimaSection::render() {
  cpu_->show(controller_.settings.cpu.get());
  memory_->show(controller_.settings.memory.get());
  disk_->show(controller_.settings.disk.get());
  stop_->setEnabled(allowsMaintenance(controller_));
}

PortsSection::PortsSection(SettingsStore& settings)
    : SettingsSection(QStringLiteral("Ports (127.0.0.1 only)")), settings_(settings) {
  auto* grid = new QGridLayout;
  grid->setColumnStretch(2, 1);
  rows().addLayout(grid);
  const auto addPort = [&](const QString& title, Setting<std::int64_t>& setting) {
    auto* field = new NumberField;
    field->setAccessibleName(title);
    auto* label = new QLabel(title);
    label->setBuddy(field);
    grid->addWidget(label, grid->rowCount(), 0);
    grid->addWidget(field, grid->rowCount() - 1, 1);
    connect(field, &NumberField::typed, this, [&setting](qint64 number) { setting = number; });
    return field;
  };
  http_ = addPort(QStringLiteral("HTTP port"), settings.httpPort);
  https_ = addPort(QStringLiteral("HTTPS port"), settings.httpsPort);
  addCaption(QStringLiteral(
      "Used the next time the desktop is created. Use “Apply settings now” below to recreate it."));
}

void PortsSection::render() {
  http_->show(settings_.httpPort.get());
  https_->show(settings_.httpsPort.get());
}

}  // namespace tarnwick
