#pragma once

#include <QProgressBar>
#include <QTimer>
#include <optional>

namespace tarnwick {

/// A slim bar. Assistive tools read its value in per cent.
class ProgressBar final : public QProgressBar {
 public:
  explicit ProgressBar(QWidget* parent = nullptr);

  /// A fraction from 0 to 1, or none for a step without a measure.
  void setFraction(std::optional<double> fraction);

  [[nodiscard]] QSize sizeHint() const override;
  [[nodiscard]] QSize minimumSizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;
  void showEvent(QShowEvent* event) override;
  void hideEvent(QHideEvent* event) override;

 private:
  void animate();

  std::optional<double> fraction_;
  QTimer timer_;
  int step_ = 0;
};

}  // namespace tarnwick
