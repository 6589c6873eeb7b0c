#include "ui/home/error_card.h"

#include <QHBoxLayout>
#include <QHideEvent>
#include <QVBoxLayout>

#include "ui/common/card.h"
#include "ui/common/symbol_view.h"

namespace tarnwick {
namespace {

constexpr int detailsHeight = 160;

}  // namespace

ErrorCard::ErrorCard(DesktopController& controller, QWidget* parent)
    : QWidget(parent),
      controller_(controller),
      summary_(new TextLabel(FontRole::body, ColorRole::orange)),
      showDetails_(new DisclosureButton(QStringLiteral("Show details"))),
      details_(new LogDetails([this]() -> const LogText& { return controller_.log.get(); })) {
  auto* card = new Card(12, ColorRole::warningFill);
  auto* whole = new QVBoxLayout(this);
  whole->setContentsMargins(0, 0, 0, 0);
  whole->addWidget(card);

  auto* column = new QVBoxLayout(card);
  column->setContentsMargins(16, 16, 16, 16);
  column->setSpacing(8);
  auto* label = new QHBoxLayout;
  label->setSpacing(8);
  label->addWidget(new SymbolView(Symbol::exclamationmarkTriangleFill, ColorRole::orange), 0,
                   Qt::AlignTop);
  label->addWidget(summary_, 1);
  column->addLayout(label);
  showDetails_->setAutoDefault(true);
  column->addWidget(showDetails_, 0, Qt::AlignLeft);
  details_->setFixedHeight(detailsHeight);
  details_->hide();
  column->addWidget(details_);
  QObject::connect(showDetails_, &QAbstractButton::toggled, details_, &QWidget::setVisible);
}

void ErrorCard::render() {
  const auto& summary = controller_.errorSummary.get();
  setVisible(summary.has_value());
  if (!summary) return;
  summary_->setText(QString::fromStdString(*summary));
  details_->follow();
}

void ErrorCard::hideEvent(QHideEvent* event) {
  QWidget::hideEvent(event);
  // The next error begins folded; a minimised window keeps what is open.
  if (!event->spontaneous()) showDetails_->setChecked(false);
}

}  // namespace tarnwick
