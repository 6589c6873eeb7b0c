#pragma once

#include <QTimer>
#include <QWidget>

namespace tarnwick {

/// A small turning wheel. It turns only while it is on the screen.
class Spinner final : public QWidget {
 public:
  explicit Spinner(QWidget* parent = nullptr);
  [[nodiscard]] QSize sizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;
  void showEvent(QShowEvent* event) override;
  void hideEvent(QHideEvent* event) override;

 private:
  QTimer timer_;
  int step_ = 0;
};

}  // namespace tarnwick
