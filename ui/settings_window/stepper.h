#pragma once

#include <QSpinBox>
#include <QString>
#include <cstdint>

namespace tarnwick {

/// Shows "Memory: 4 GB" and steps the number within a range. A stored number outside the range is
/// shown as it is, and the first step leads back into the range.
class Stepper : public QSpinBox {
  Q_OBJECT

 public:
  struct Kind {
    QString name;  ///< "Memory"
    QString unit;  ///< " GB", or empty
    int minimum;
    int maximum;
    int step;
  };

  explicit Stepper(Kind kind, QWidget* parent = nullptr);
  /// Shows the number without telling of it.
  void show(std::int64_t number);
  using QSpinBox::show;

  void stepBy(int steps) override;

 signals:
  /// The user chose another number.
  void stepped(int number);

 protected:
  [[nodiscard]] StepEnabled stepEnabled() const override;
  void wheelEvent(QWheelEvent* event) override;

 private:
  Kind kind_;
};

}  // namespace tarnwick
