#include "ui/main_window/main_window.h"

#include <QMenuBar>
#include <utility>

namespace tarnwick {
namespace {

constexpr QSize defaultContent(1000, 700);
constexpr QSize minimumContent(760, 540);

/// Has a smallest size, and a larger one where fonts are so large that the content needs it.
class Content final : public QStackedWidget {
 public:
  using QStackedWidget::QStackedWidget;
  [[nodiscard]] QSize minimumSizeHint() const override {
    return QStackedWidget::minimumSizeHint().expandedTo(minimumContent);
  }
};

}  // namespace

MainWindow::MainWindow(DesktopController& controller, WindowOpener& windows,
                       WebDesktopServices& services, WebModuleSource webModule,
                       std::function<void()> copyDiagnostics)
    : controller_(controller),
      windows_(windows),
      services_(services),
      webModule_(std::move(webModule)),
      content_(new Content(this)),
      home_(new HomeScreen(controller, windows)),
      menu_(new MainMenu(*this, controller, windows, std::move(copyDiagnostics))),
      announcer_(new Announcer(this)),
      announcements_(controller, *announcer_),
      scheduler_([this] { render(); }) {
  setWindowTitle(QStringLiteral("Tarnwick"));
  content_->addWidget(home_);
  setCentralWidget(content_);
  resize(defaultContent + QSize(0, menuBar()->sizeHint().height()));
  scheduler_.observe(controller.changes());
  scheduler_.observe(controller.settings.changes());
  render();
}

MainWindow::~MainWindow() = default;

void MainWindow::showEvent(QShowEvent* event) {
  QMainWindow::showEvent(event);
  // Later calls do nothing.
  controller_.startMonitor();
}

void MainWindow::render() {
  const bool wantsDesktop =
      controller_.showDesktop.get() && controller_.phase.get() == Phase::running;
  if (wantsDesktop && !desktop_) enterDesktop();
  if (!wantsDesktop && desktop_) leaveDesktop();
  menu_->render(desktop_ ? Keyboard::desktops : Keyboard::ours);
  announcements_.render();
}

void MainWindow::enterDesktop() {
  desktop_ = new DesktopScreen(controller_, windows_, services_, webModule_);
  content_->addWidget(desktop_);
  content_->setCurrentWidget(desktop_);
  desktop_->focusContent();
}

void MainWindow::leaveDesktop() {
  DesktopScreen* screen = desktop_;
  desktop_ = nullptr;
  content_->setCurrentWidget(home_);
  content_->removeWidget(screen);
  home_->focusMainButton();
  screen->deleteLater();
}

}  // namespace tarnwick
