#include "ui/home/top_card.h"

#include <QHBoxLayout>
#include <QVBoxLayout>
#include <algorithm>

#include "ui/common/card.h"
#include "ui/common/logo_view.h"
#include "ui/home/home_texts.h"

namespace tarnwick {
namespace {

constexpr int logoSize = 76;
constexpr int pickerWidth = 420;

TextLabel* centred(TextLabel* label) {
  label->setAlignment(Qt::AlignHCenter);
  return label;
}

void showText(TextLabel& label, const QString& text) {
  label.setText(text);
  label.setVisible(!text.isEmpty());
}

}  // namespace

TopCard::TopCard(DesktopController& controller, QWidget* parent)
    : QWidget(parent),
      controller_(controller),
      picker_(new FlavorPicker),
      main_(new ProminentButton(QString())),
      stop_(new PlainButton(QStringLiteral("Stop"), PlainButton::Size::large)),
      firstRun_(centred(new TextLabel(FontRole::callout, ColorRole::secondary))),
      installHint_(centred(new TextLabel(FontRole::caption, ColorRole::secondary))) {
  build();
  QObject::connect(picker_, &QComboBox::activated, this,
                   [this](int index) { controller_.settings.flavorID = picker_->flavorAt(index); });
  QObject::connect(main_, &QPushButton::clicked, this, [this] { controller_.primary(); });
  QObject::connect(stop_, &QPushButton::clicked, this, [this] { controller_.stop(); });
}

void TopCard::build() {
  auto* card = new Card(16, ColorRole::card);
  auto* whole = new QVBoxLayout(this);
  whole->setContentsMargins(0, 0, 0, 0);
  whole->addWidget(card);

  auto* column = new QVBoxLayout(card);
  column->setContentsMargins(24, 24, 24, 24);
  column->setSpacing(14);
  column->addWidget(new LogoView(logoSize), 0, Qt::AlignHCenter);
  column->addWidget(centred(new TextLabel(QStringLiteral("Tarnwick"), FontRole::largeTitle)));
  auto* pickerRow = new QHBoxLayout;
  pickerRow->addStretch(1);
  pickerRow_ = makePicker();
  fitPicker();
  pickerRow->addWidget(pickerRow_, 1000);
  pickerRow->addStretch(1);
  column->addLayout(pickerRow);
  column->addWidget(centred(new TextLabel(
      QStringLiteral("Download sizes are approximate. Each flavor keeps its own data."),
      FontRole::caption, ColorRole::secondary)));
  main_->setAutoDefault(true);
  stop_->setAutoDefault(true);
  column->addWidget(main_, 0, Qt::AlignHCenter);
  column->addWidget(stop_, 0, Qt::AlignHCenter);
  column->addWidget(firstRun_);
  column->addWidget(installHint_);
}

QWidget* TopCard::makePicker() {
  auto* row = new QWidget;
  auto* layout = new QHBoxLayout(row);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(8);
  auto* label = new TextLabel(QStringLiteral("Flavor"), FontRole::body);
  label->setWordWrap(false);
  label->setBuddy(picker_);
  layout->addWidget(label);
  layout->addWidget(picker_, 1);
  return row;
}

bool TopCard::event(QEvent* event) {
  const bool handled = QWidget::event(event);
  if (changesTheme(*event)) fitPicker();
  return handled;
}

void TopCard::fitPicker() {
  // Wider only where the user's font is so large that entries would be cut.
  if (pickerRow_)
    pickerRow_->setMaximumWidth(std::max(pickerWidth, pickerRow_->sizeHint().width()));
}

void TopCard::render() {
  const Phase phase = controller_.phase.get();
  picker_->showFlavor(controller_.settings.flavorID.get());
  picker_->setEnabled(phase == Phase::idle);
  const QString title = primaryTitle(controller_);
  if (main_->text() != title) main_->setText(title);
  main_->setEnabled(phase != Phase::busy && !controller_.isStopping.get());
  stop_->setVisible(phase == Phase::running);
  showText(*firstRun_, firstRunText(controller_));
  showText(*installHint_, installHint(controller_));
}

}  // namespace tarnwick
