#include "ui/home/progress_card.h"

#include "ui/common/card.h"

namespace tarnwick {
namespace {

constexpr std::size_t tailLines = 6;

QVBoxLayout* plainColumn(QWidget* widget, int spacing) {
  auto* column = new QVBoxLayout(widget);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(spacing);
  return column;
}

}  // namespace

ProgressCard::ProgressCard(DesktopController& controller, QWidget* parent)
    : QWidget(parent),
      controller_(controller),
      run_(new QWidget),
      bar_(new ProgressBar),
      text_(new TextLabel(FontRole::callout, ColorRole::secondary)),
      tail_(new QWidget),
      cancel_(new PlainButton(QStringLiteral("Cancel"))) {
  auto* card = new Card(14, ColorRole::card);
  plainColumn(this, 0)->addWidget(card);
  auto* column = new QVBoxLayout(card);
  column->setContentsMargins(18, 18, 18, 18);
  column->setSpacing(10);
  auto* checklist = new QWidget;
  checklist_ = plainColumn(checklist, 10);
  column->addWidget(checklist);
  column->addWidget(run_);

  QVBoxLayout* run = plainColumn(run_, 10);
  bar_->setAccessibleName(QStringLiteral("Progress"));
  run->addWidget(bar_);
  run->addWidget(text_);
  QVBoxLayout* tail = plainColumn(tail_, 1);
  for (std::size_t i = 0; i < tailLines; ++i) {
    lines_.push_back(new ElidedLabel(FontRole::mono, ColorRole::secondary));
    tail->addWidget(lines_.back());
  }
  run->addWidget(tail_);
  cancel_->setAutoDefault(true);
  run->addWidget(cancel_, 0, Qt::AlignLeft);
  QObject::connect(cancel_, &QPushButton::clicked, this, [this] { controller_.cancel(); });
}

void ProgressCard::render() {
  renderChecklist();
  const bool busy = controller_.phase.get() == Phase::busy;
  run_->setVisible(busy);
  if (!busy) return;
  bar_->setFraction(controller_.progress.get());
  const QString text = QString::fromStdString(controller_.progressText.get());
  text_->setText(text);
  text_->setVisible(!text.isEmpty());
  renderTail();
}

void ProgressCard::renderChecklist() {
  const auto& stages = controller_.stages.get();
  while (rows_.size() < stages.size()) {
    rows_.push_back(new ChecklistRow);
    checklist_->addWidget(rows_.back());
  }
  for (std::size_t i = 0; i < rows_.size(); ++i) {
    rows_[i]->setVisible(i < stages.size());
    if (i < stages.size()) rows_[i]->show(stages[i]);
  }
  checklist_->parentWidget()->setVisible(!controller_.installing.get() && !stages.empty());
}

void ProgressCard::renderTail() {
  const auto tail = controller_.log.get().tail(tailLines);
  for (std::size_t i = 0; i < lines_.size(); ++i) {
    lines_[i]->setVisible(i < tail.size());
    if (i >= tail.size()) continue;
    lines_[i]->setText(QString::fromUtf8(tail[i].data(), static_cast<qsizetype>(tail[i].size())));
  }
  tail_->setVisible(!tail.empty());
}

}  // namespace tarnwick
