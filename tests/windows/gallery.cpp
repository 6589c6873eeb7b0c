#include <QMessageBox>

#include "core/engine/docker.h"
#include "tests/gallery/picture_folder.h"
#include "tests/windows/windows_fixture.h"
#include "ui/dialogs/install_offer.h"
#include "ui/dialogs/keys_help.h"
#include "ui/dialogs/port_conflict_sheet.h"
#include "ui/dialogs/remove_flavor.h"
#include "ui/logs_window/logs_window.h"
#include "ui/settings_window/settings_window.h"
#include "ui/tray/tray_item.h"

// Draws the settings and logs windows, the dialogs and the tray's menu in their states.

namespace tarnwick {
namespace {

class Gallery {
 public:
  explicit Gallery(PictureFolder& pictures) : pictures_(pictures) {}

  void save(const QString& name, QWidget& window) { pictures_.save(name, window); }

  using Arrange = std::function<void(WindowsWorld&)>;

  void drawSettings(const QString& name, QSize size, const Arrange& arrange) {
    WindowsWorld world;
    arrange(world);
    auto* window = new SettingsWindow(SettingsWindowServices{
        world.controller, world.mainThread, world.dialogs, world.workspace, world.paths});
    window->resize(size);
    window->show();
    world.settle();
    save(name, *window);
    delete window;
  }

  void drawLogs(const QString& name, QSize size, const std::string& log) {
    WindowsWorld world;
    Docker docker(world.runner, world.tools);
    world.runner.on({"docker", "logs"}, FakeCommandRunner::success(log));
    LogsWindow window(LogsWindowServices{docker, world.mainThread, world.workers, world.dialogs});
    window.resize(size);
    window.show();
    if (!log.empty()) world.settle();
    save(name, window);
  }

  template <typename Dialog>
  void drawBox(const QString& name, const std::function<void(WindowsWorld&, QWidget&)>& open) {
    WindowsWorld world;
    QWidget parent;
    parent.show();
    open(world, parent);
    world.settle();
    save(name, *parent.findChild<Dialog*>());
  }

 private:
  PictureFolder& pictures_;
};

void drawSettings(Gallery& gallery) {
  const QSize whole(620, 1560);
  gallery.drawSettings("settings", whole, [](WindowsWorld&) {});
  gallery.drawSettings("settings-smallest", QSize(1, 1), [](WindowsWorld&) {});
  gallery.drawSettings("settings-full", whole, [](WindowsWorld& world) {
    world.controller.settings.setRequirePassword(true);
    world.controller.settings.shareFolder = "/home/ada/" + std::string(120, 'p') + "/pictures";
    world.controller.notice =
        "Colima was stopped. Press the main button to start it again with the new settings.";
  });
  gallery.drawSettings("settings-busy", whole, [](WindowsWorld& world) {
    world.secrets.refuse(SecretStatus::locked);
    world.controller.settings.setRequirePassword(true);
    world.controller.phase = Phase::busy;
  });
}

void drawLogs(Gallery& gallery) {
  std::string log;
  for (int i = 1; i <= 60; ++i) {
    log += "[custom-init] " + std::to_string(i) + " of 60: a line of the desktop's container" +
           (i % 7 == 0 ? std::string(140, '=') : "") + "\n";
  }
  gallery.drawLogs("logs", QSize(760, 520), log);
  gallery.drawLogs("logs-smallest", QSize(1, 1), "");
}

void drawDialogs(Gallery& gallery) {
  gallery.drawBox<PortConflictSheet>("port-conflict", [](WindowsWorld& world, QWidget& parent) {
    DesktopController& c = world.controller;
    c.portConflict =
        PortConflict{"one", 3000,
                     "COMMAND   PID USER   FD   TYPE DEVICE SIZE/OFF NODE NAME\n"
                     "node    41207  ada   22u  IPv4 123456      0t0  TCP 127.0.0.1:3000 (LISTEN)",
                     3100, 3101};
    (new PortConflictSheet(c, *c.portConflict.get(), &parent))->open();
  });
  gallery.drawBox<QMessageBox>("install-offer", [](WindowsWorld& world, QWidget& parent) {
    showInstallOffer(&parent, world.controller);
  });
  gallery.drawBox<QMessageBox>("remove-flavor", [](WindowsWorld& world, QWidget& parent) {
    QtDialogService real;
    confirmRemoveFlavor(&parent, world.controller, real);
  });
  WindowsWorld world;
  KeysHelp help;
  help.show();
  world.settle();
  gallery.save("keys-help", help);
  TrayItem tray(world.controller, world.windows);
  tray.menu().popup(QPoint());
  world.settle();
  gallery.save("tray-menu", tray.menu());
}

}  // namespace
}  // namespace tarnwick

int main(int argc, char** argv) {
  return tarnwick::drawPictures(argc, argv, [](tarnwick::PictureFolder& pictures) {
    tarnwick::Gallery gallery(pictures);
    tarnwick::drawSettings(gallery);
    tarnwick::drawLogs(gallery);
    tarnwick::drawDialogs(gallery);
  });
}
