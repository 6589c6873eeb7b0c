#include "tests/gallery/picture_folder.h"
#include "tests/interface/interface_fixture.h"
#include "ui/common/buttons.h"
#include "ui/main_window/main_window.h"

// Draws the main window in its states.

namespace tarnwick {
namespace {

class Gallery {
 public:
  explicit Gallery(PictureFolder& pictures) : pictures_(pictures) {}

  using Arrange = std::function<void(InterfaceWorld&)>;

  void draw(const QString& name, QSize size, const Arrange& arrange,
            const std::function<void(MainWindow&)>& afterwards = {}) {
    InterfaceWorld world;
    RecordingWebServices services;
    FakeWebModule module;
    arrange(world);
    const auto webModule = [&module] { return WebModule{&module, {}}; };
    MainWindow window(world.controller, world.windows, services, webModule, [] {});
    window.resize(size);
    window.show();
    world.settle();
    if (afterwards) afterwards(window);
    world.settle();
    pictures_.save(name, window);
  }

 private:
  PictureFolder& pictures_;
};

void makeBusy(InterfaceWorld& world) {
  DesktopController& c = world.controller;
  auto stages = initialStages();
  stages[0].state = StageState::done;
  stages[1].state = StageState::active;
  c.stages = stages;
  c.phase = Phase::busy;
  c.progress = 0.42;
  c.progressText = "Downloading the image: 5 of 12 layers done…";
  c.log.mutate([](LogText& log) {
    for (const char* id : {"9b3977197b4f", "4f4fb700ef54", "a1c2e51b03d8", "77dd8bba4b21"}) {
      log.appendLine(std::string(id) + ": Pulling fs layer");
      log.appendLine(std::string(id) + ": Download complete");
    }
    log.appendLine(std::string("a line that is much too long for the card: ") +
                   std::string(160, '-') + " and its end");
  });
}

void makeFailed(InterfaceWorld& world) {
  makeBusy(world);
  DesktopController& c = world.controller;
  auto stages = c.stages.get();
  stages[1].state = StageState::failed;
  c.stages = stages;
  c.phase = Phase::idle;
  c.errorSummary =
      "The disk is full. Free some space, or remove a flavor that you no longer use in Settings, "
      "and try again.";
  c.notice = "Cancelled.";
}

void makeRunning(InterfaceWorld& world) {
  DesktopController& c = world.controller;
  auto stages = initialStages();
  for (Stage& stage : stages) stage.state = StageState::done;
  c.stages = stages;
  c.phase = Phase::running;
  c.settings.markLaunched("alpine-xfce");
}

void drawAll(Gallery& gallery) {
  const QSize usual(1000, 700);
  const QSize small(760, 560);
  gallery.draw("home-idle", usual, [](InterfaceWorld&) {});
  gallery.draw("home-missing-tools", small,
               [](InterfaceWorld& world) { world.tools.installed = {"brew"}; });
  gallery.draw("home-busy", QSize(1000, 900), makeBusy);
  gallery.draw("home-busy-small", small, makeBusy);
  gallery.draw("home-installing", usual, [](InterfaceWorld& world) {
    makeBusy(world);
    world.controller.installing = true;
    world.controller.progress = std::nullopt;
    world.controller.progressText = "Installing Colima and Docker…";
  });
  gallery.draw("home-failed", QSize(1000, 1000), makeFailed,
               [](MainWindow& window) { findButton(window, "Show details")->click(); });
  gallery.draw("home-running", QSize(1600, 1000), makeRunning);
  gallery.draw("desktop", usual, [](InterfaceWorld& world) {
    makeRunning(world);
    world.controller.showDesktop = true;
  });
  gallery.draw("desktop-bad-address", small, [](InterfaceWorld& world) {
    makeRunning(world);
    world.controller.settings.httpsPort = 70000;
    world.controller.showDesktop = true;
  });
}

}  // namespace
}  // namespace tarnwick

int main(int argc, char** argv) {
  return tarnwick::drawPictures(argc, argv, [](tarnwick::PictureFolder& pictures) {
    tarnwick::Gallery gallery(pictures);
    tarnwick::drawAll(gallery);
  });
}
