#include "ui/home/home_screen.h"

#include <QHBoxLayout>
#include <QScrollArea>
#include <QScrollBar>
#include <QVBoxLayout>

#include "ui/common/buttons.h"
#include "ui/dialogs/install_offer.h"
#include "ui/dialogs/port_conflict_sheet.h"
#include "ui/home/home_texts.h"

namespace tarnwick {
namespace {

constexpr int columnWidth = 640;
constexpr int padding = 28;

}  // namespace

HomeScreen::HomeScreen(DesktopController& controller, WindowOpener& windows, QWidget* parent)
    : QWidget(parent),
      controller_(controller),
      windows_(windows),
      top_(new TopCard(controller)),
      progress_(new ProgressCard(controller)),
      error_(new ErrorCard(controller)),
      notice_(new TextLabel(FontRole::callout, ColorRole::secondary)),
      scheduler_([this] { render(); }) {
  build();
  scheduler_.observe(controller.changes());
  scheduler_.observe(controller.settings.changes());
  render();
}

HomeScreen::~HomeScreen() {
  delete portSheet_.data();
}

void HomeScreen::build() {
  auto* column = new QWidget;
  column->setMaximumWidth(columnWidth);
  auto* items = new QVBoxLayout(column);
  items->setContentsMargins(padding, padding, padding, padding);
  items->setSpacing(18);
  items->addWidget(top_);
  items->addWidget(progress_);
  items->addWidget(error_);
  notice_->setAlignment(Qt::AlignHCenter);
  items->addWidget(notice_);
  items->addWidget(makeLinks());
  items->addStretch(1);

  auto* page = new QWidget;
  auto* centring = new QHBoxLayout(page);
  centring->setContentsMargins(0, 0, 0, 0);
  centring->setSpacing(0);
  centring->addStretch(1);
  // The column takes all the room up to its maximum before the margins get any.
  centring->addWidget(column, 1000);
  centring->addStretch(1);

  auto* scroll = new QScrollArea;
  scroll->setFrameShape(QFrame::NoFrame);
  scroll->setWidgetResizable(true);
  // Keys that scroll reach it from whatever has the focus; it is no stop on the way of Tab.
  scroll->setFocusPolicy(Qt::NoFocus);
  scroll->setWidget(page);
  scroll->verticalScrollBar()->setAccessibleName(QStringLiteral("Scroll the page"));
  scroll->horizontalScrollBar()->setAccessibleName(QStringLiteral("Scroll the page sideways"));
  auto* whole = new QVBoxLayout(this);
  whole->setContentsMargins(0, 0, 0, 0);
  whole->addWidget(scroll);
}

QWidget* HomeScreen::makeLinks() {
  auto* row = new QWidget;
  auto* layout = new QHBoxLayout(row);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(14);
  const auto addLink = [&](const QString& title, const char* window) {
    auto* link = new LinkButton(title);
    link->setAutoDefault(true);
    layout->addWidget(link);
    QObject::connect(link, &QPushButton::clicked, this,
                     [this, window] { windows_.openWindow(window); });
  };
  layout->addStretch(1);
  addLink(QStringLiteral("Settings"), settingsWindowId);
  addLink(QStringLiteral("Logs"), logsWindowId);
  layout->addStretch(1);
  return row;
}

bool HomeScreen::event(QEvent* event) {
  // Tools may have been installed or removed while the user was in another window.
  if (event->type() == QEvent::WindowActivate) scheduler_.request();
  return QWidget::event(event);
}

void HomeScreen::showEvent(QShowEvent* event) {
  QWidget::showEvent(event);
  // Dialogs that wait for a window to be modal to.
  scheduler_.request();
}

void HomeScreen::render() {
  // A button that goes away hands the keyboard's focus to the one that answers it.
  const bool starts = top_->hasKeyboard();
  const bool ends = progress_->cancelHasFocus();
  top_->render();
  progress_->setVisible(showsProgress(controller_));
  progress_->render();
  const bool busy = controller_.phase.get() == Phase::busy;
  if (starts && busy) progress_->focusCancel();
  if (ends && !busy) top_->focusMainButton();
  error_->render();
  const auto& notice = controller_.notice.get();
  notice_->setText(notice ? QString::fromStdString(*notice) : QString());
  notice_->setVisible(notice.has_value());
  presentInstallOffer();
  presentPortConflict();
}

void HomeScreen::presentInstallOffer() {
  const bool wanted = controller_.askInstall.get() && isVisible();
  if (wanted && !installOffered_) showInstallOffer(this, controller_);
  installOffered_ = wanted;
}

void HomeScreen::presentPortConflict() {
  const auto& conflict = controller_.portConflict.get();
  const std::string wanted = conflict && isVisible() ? conflict->id : std::string();
  if (wanted == shownConflict_) return;
  shownConflict_ = wanted;
  // Not closed: closing means that the user has answered, and the answer is to another question.
  delete portSheet_.data();
  if (wanted.empty()) return;
  auto* sheet = new PortConflictSheet(controller_, *conflict, this);
  sheet->setAttribute(Qt::WA_DeleteOnClose);
  portSheet_ = sheet;
  sheet->open();
}

}  // namespace tarnwick
