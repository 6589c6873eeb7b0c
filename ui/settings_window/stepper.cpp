#include "ui/settings_window/stepper.h"

#include <QLineEdit>
#include <QSignalBlocker>
#include <QWheelEvent>
#include <algorithm>
#include <limits>
#include <utility>

namespace tarnwick {

Stepper::Stepper(Kind kind, QWidget* parent) : QSpinBox(parent), kind_(std::move(kind)) {
  setAccessibleName(kind_.name);
  setPrefix(kind_.name + QStringLiteral(": "));
  setSuffix(kind_.unit);
  setSingleStep(kind_.step);
  lineEdit()->setReadOnly(true);
  setFocusPolicy(Qt::StrongFocus);
  // Assistive tools set the number itself.
  connect(this, &QSpinBox::valueChanged, this,
          [this](int number) { emit stepped(std::clamp(number, kind_.minimum, kind_.maximum)); });
  show(kind_.minimum);
}

void Stepper::show(std::int64_t number) {
  using Limits = std::numeric_limits<int>;
  const int shown =
      static_cast<int>(std::clamp<std::int64_t>(number, Limits::min(), Limits::max()));
  const QSignalBlocker quiet(this);
  setRange(std::min(shown, kind_.minimum), std::max(shown, kind_.maximum));
  setValue(shown);
}

void Stepper::stepBy(int steps) {
  const std::int64_t wanted = std::int64_t{value()} + std::int64_t{steps} * kind_.step;
  const int number =
      static_cast<int>(std::clamp<std::int64_t>(wanted, kind_.minimum, kind_.maximum));
  if (number != value()) emit stepped(number);
}

QAbstractSpinBox::StepEnabled Stepper::stepEnabled() const {
  StepEnabled enabled = StepNone;
  if (value() > kind_.minimum) enabled |= StepDownEnabled;
  if (value() < kind_.maximum) enabled |= StepUpEnabled;
  return enabled;
}

// The wheel scrolls the page; it is not to change a number that happens to pass under the pointer.
void Stepper::wheelEvent(QWheelEvent* event) {
  event->ignore();
}

}  // namespace tarnwick
