#include "ui/home/checklist_row.h"

#include <QHBoxLayout>

namespace tarnwick {
namespace {

QString inWords(StageState state) {
  switch (state) {
    case StageState::pending:
      return QStringLiteral("waiting");
    case StageState::active:
      return QStringLiteral("in progress");
    case StageState::done:
      return QStringLiteral("done");
    case StageState::failed:
      break;
  }
  return QStringLiteral("failed");
}

}  // namespace

ChecklistRow::ChecklistRow(QWidget* parent)
    : QWidget(parent),
      pictures_(new QStackedLayout),
      symbol_(new SymbolView(Symbol::circle, ColorRole::secondary)),
      spinner_(new Spinner),
      title_(new TextLabel(FontRole::body)) {
  auto* row = new QHBoxLayout(this);
  row->setContentsMargins(0, 0, 0, 0);
  row->setSpacing(8);
  auto* picture = new QWidget;
  picture->setLayout(pictures_);
  picture->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
  pictures_->addWidget(symbol_);
  pictures_->addWidget(spinner_);
  row->addWidget(picture);
  row->addWidget(title_, 1);
}

void ChecklistRow::show(const Stage& stage) {
  if (shown_ == stage) return;
  shown_ = stage;
  switch (stage.state) {
    case StageState::pending:
      symbol_->setSymbol(Symbol::circle, ColorRole::secondary);
      break;
    case StageState::done:
      symbol_->setSymbol(Symbol::checkmarkCircleFill, ColorRole::green);
      break;
    case StageState::failed:
      symbol_->setSymbol(Symbol::xmarkCircleFill, ColorRole::red);
      break;
    case StageState::active:
      break;
  }
  if (stage.state == StageState::active) {
    pictures_->setCurrentWidget(spinner_);
  } else {
    pictures_->setCurrentWidget(symbol_);
  }
  const QString title = QString::fromStdString(stage.title);
  title_->setText(title);
  title_->setColorRole(stage.state == StageState::pending ? ColorRole::secondary
                                                          : ColorRole::primary);
  title_->setAccessibleName(title + QStringLiteral(": ") + inWords(stage.state));
}

}  // namespace tarnwick
