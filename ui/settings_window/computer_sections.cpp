#include "ui/settings_window/computer_sections.h"

#include <QHBoxLayout>

#include "ui/common/buttons.h"

namespace tarnwick {

FolderSection::FolderSection(SettingsStore& settings, DialogService& dialogs)
    : SettingsSection(QStringLiteral("Shared Mac folder")),
      settings_(settings),
      dialogs_(dialogs),
      path_(new ElidedLabel(FontRole::body)),
      stop_(new PlainButton(QStringLiteral("Stop sharing"))) {
  auto* share = new PlainButton(QStringLiteral("Share a Mac folder…"));
  auto* row = new QHBoxLayout;
  row->addWidget(path_, 1);
  row->addWidget(share);
  row->addWidget(stop_);
  rows().addLayout(row);
  addCaption(QStringLiteral(
      "Appears in Linux at /config/MacShare. Colima mounts the Mac home folder read-only by "
      "default; a writable mount (colima start --mount folder:w) is marked experimental by Lima. "
      "It takes effect after Colima restarts and the desktop is recreated, and has not been "
      "tested."));
  connect(share, &QPushButton::clicked, this, [this] { chooseFolder(); });
  connect(stop_, &QPushButton::clicked, this, [this] { settings_.shareFolder = std::string(); });
}

void FolderSection::chooseFolder() {
  PanelOptions options;
  options.title = QStringLiteral("Share a Mac folder");
  options.acceptTitle = QStringLiteral("Share");
  dialogs_.chooseFolder(window(), options, [this](const std::optional<QString>& folder) {
    if (folder) settings_.shareFolder = folder->toStdString();
  });
}

void FolderSection::render() {
  const std::string& folder = settings_.shareFolder.get();
  path_->setText(folder.empty() ? QStringLiteral("None") : QString::fromStdString(folder));
  stop_->setVisible(!folder.empty());
}

StartupSection::StartupSection(DesktopController& controller)
    : SettingsSection(QStringLiteral("Startup")),
      controller_(controller),
      launchAtLogin_(new QCheckBox(QStringLiteral("Launch Tarnwick at login"))),
      colimaAtLogin_(new QCheckBox(QStringLiteral("Start Colima at login (brew services)"))),
      stopColima_(new QCheckBox(QStringLiteral("Stop Colima when I quit"))) {
  for (QCheckBox* toggle : {launchAtLogin_, colimaAtLogin_, stopColima_}) rows().addWidget(toggle);
  addCaption(
      QStringLiteral("Colima keeps using memory while it runs. Quitting the app never stops the "
                     "desktop container by itself."));
  connect(launchAtLogin_, &QCheckBox::toggled, this,
          [this](bool on) { controller_.settings.setLaunchAtLogin(on); });
  connect(colimaAtLogin_, &QCheckBox::toggled, this,
          [this](bool on) { controller_.setColimaAtLogin(on); });
  connect(stopColima_, &QCheckBox::toggled, this,
          [this](bool on) { controller_.settings.stopColimaOnQuit = on; });
}

void StartupSection::render() {
  showChecked(*launchAtLogin_, controller_.settings.launchAtLogin.get());
  showChecked(*colimaAtLogin_, controller_.settings.colimaAtLogin.get());
  showChecked(*stopColima_, controller_.settings.stopColimaOnQuit.get());
}

}  // namespace tarnwick
