#include <QApplication>
#include <QDir>
#include <QMessageBox>
#include <cstdio>

#include "core/engine/docker.h"
#include "tests/windows/windows_fixture.h"
#include "ui/dialogs/install_offer.h"
#include "ui/dialogs/keys_help.h"
#include "ui/dialogs/port_conflict_sheet.h"
#include "ui/dialogs/remove_flavor.h"
#include "ui/logs_window/logs_window.h"
#include "ui/settings_window/settings_window.h"
#include "ui/tray/tray_item.h"

// Draws the settings and logs windows, the dialogs and the tray's menu in their states into the
// folder named by the first argument, without a display. The environment variable QT_SCALE_FACTOR
// works as in the application; `dark` and `largefont` as further arguments choose the theme.

namespace tarnwick {
namespace {

QPalette darkPalette() {
  QPalette palette;
  const QColor text(0xf2, 0xf2, 0xf2);
  palette.setColor(QPalette::Window, QColor(0x2b, 0x2b, 0x2e));
  palette.setColor(QPalette::Base, QColor(0x1e, 0x1e, 0x20));
  palette.setColor(QPalette::AlternateBase, QColor(0x2b, 0x2b, 0x2e));
  palette.setColor(QPalette::Button, QColor(0x3a, 0x3a, 0x3e));
  for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
    palette.setColor(role, text);
    palette.setColor(QPalette::Disabled, role, QColor(0x80, 0x80, 0x84));
  }
  // The style draws it as the shadow of disabled texts.
  palette.setColor(QPalette::Light, QColor(0x1e, 0x1e, 0x20));
  palette.setColor(QPalette::Highlight, QColor(0x2a, 0x82, 0xda));
  palette.setColor(QPalette::HighlightedText, Qt::white);
  return palette;
}

class Gallery {
 public:
  Gallery(QString folder, QString suffix) : folder_(std::move(folder)), suffix_(std::move(suffix)) {
    QDir().mkpath(folder_);
  }

  void save(const QString& name, QWidget& window) {
    const QString path = folder_ + "/" + name + suffix_ + ".png";
    if (!window.grab().save(path)) std::fprintf(stderr, "cannot write %s\n", qPrintable(path));
    std::printf("%s\n", qPrintable(path));
  }

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
  QString folder_;
  QString suffix_;
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
  qputenv("QT_QPA_PLATFORM", "offscreen");
  qputenv("QT_STYLE_OVERRIDE", "fusion");
  const QApplication application(argc, argv);
  const QStringList arguments = QCoreApplication::arguments().mid(1);
  if (arguments.isEmpty()) {
    std::fputs("usage: tarnwick_windows_gallery FOLDER [dark] [largefont]\n", stderr);
    return 2;
  }
  QString suffix;
  if (arguments.contains("dark")) {
    QApplication::setPalette(tarnwick::darkPalette());
    suffix += "-dark";
  }
  if (arguments.contains("largefont")) {
    QFont font = QApplication::font();
    font.setPointSizeF(font.pointSizeF() * 1.5);
    QApplication::setFont(font);
    suffix += "-largefont";
  }
  const QByteArray scale = qgetenv("QT_SCALE_FACTOR");
  if (!scale.isEmpty()) suffix += "-scale" + QString::fromLatin1(scale);
  tarnwick::Gallery gallery(arguments.first(), suffix);
  tarnwick::drawSettings(gallery);
  tarnwick::drawLogs(gallery);
  tarnwick::drawDialogs(gallery);
  return 0;
}
