#pragma once

#include <QIcon>
#include <QPainter>
#include <QWidget>

namespace tarnwick {

/// Draws the application's logo into a square with the edge `size` at the origin.
void drawLogo(QPainter& painter, double size);

/// The logo as the icon of windows.
[[nodiscard]] QIcon logoIcon();

/// The logo at a fixed size in device-independent pixels.
class LogoView final : public QWidget {
 public:
  explicit LogoView(int size, QWidget* parent = nullptr);

 protected:
  void paintEvent(QPaintEvent* event) override;
};

}  // namespace tarnwick
