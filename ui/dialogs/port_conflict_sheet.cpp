#include "ui/dialogs/port_conflict_sheet.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>
#include <utility>

#include "ui/common/buttons.h"
#include "ui/common/text_label.h"
#include "ui/dialogs/fixed_width.h"

namespace tarnwick {
namespace {

constexpr int holderHeight = 100;

QPlainTextEdit* makeHolderView(const std::string& holder) {
  auto* view = new QPlainTextEdit(QString::fromStdString(holder));
  view->setAccessibleName(QStringLiteral("Program that uses the port"));
  view->setReadOnly(true);
  view->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  view->setTabChangesFocus(true);
  view->setFont(fontFor(FontRole::mono));
  view->setFixedHeight(holderHeight);
  return view;
}

}  // namespace

PortConflictSheet::PortConflictSheet(DesktopController& controller, PortConflict conflict,
                                     QWidget* parent)
    : QDialog(parent),
      controller_(controller),
      conflict_(std::move(conflict)),
      scheduler_([this] { followController(); }) {
  setWindowModality(Qt::WindowModal);
  auto* rows = new QVBoxLayout(this);
  rows->setContentsMargins(20, 20, 20, 20);
  rows->setSpacing(12);
  addTexts();
  addButtons();
  fitHeight(*this, exactWidth);
  scheduler_.observe(controller_.changes());
}

void PortConflictSheet::addTexts() {
  const QString title = QStringLiteral("Port %1 is already in use").arg(conflict_.port);
  setWindowTitle(title);
  auto* heading = new TextLabel(title, FontRole::title3);
  heading->setSemibold();
  layout()->addWidget(heading);
  layout()->addWidget(
      new TextLabel(QStringLiteral("Another program is listening there (from lsof -nP -iTCP:%1):")
                        .arg(conflict_.port),
                    FontRole::body));
  layout()->addWidget(makeHolderView(conflict_.holder));
  layout()->addWidget(
      new TextLabel(QStringLiteral("You can quit that program, or use ports %1 and %2 instead.")
                        .arg(conflict_.suggestedHTTP)
                        .arg(conflict_.suggestedHTTPS),
                    FontRole::body));
}

void PortConflictSheet::addButtons() {
  auto* cancel = new PlainButton(QStringLiteral("Cancel"));
  auto* use = new PlainButton(
      QStringLiteral("Use %1 and %2").arg(conflict_.suggestedHTTP).arg(conflict_.suggestedHTTPS));
  use->setDefault(true);
  connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
  connect(use, &QPushButton::clicked, this, &QDialog::accept);

  auto* buttons = new QHBoxLayout;
  buttons->addStretch();
  buttons->addWidget(cancel);
  buttons->addWidget(use);
  static_cast<QVBoxLayout*>(layout())->addLayout(buttons);
  use->setFocus();
}

void PortConflictSheet::done(int result) {
  QDialog::done(result);
  if (std::exchange(isOver_, true)) return;
  if (result == Accepted) {
    controller_.useSuggestedPorts();
  } else {
    controller_.dismissPortConflict();
  }
}

bool PortConflictSheet::event(QEvent* event) {
  const bool handled = QDialog::event(event);
  if (event->type() == QEvent::LayoutRequest) fitHeight(*this, exactWidth);
  return handled;
}

void PortConflictSheet::followController() {
  const std::optional<PortConflict>& present = controller_.portConflict.get();
  if (isOver_ || (present && present->id == conflict_.id)) return;
  isOver_ = true;
  reject();
}

}  // namespace tarnwick
