#pragma once

#include <QPushButton>
#include <QToolButton>

#include "ui/common/symbols.h"

namespace tarnwick {

/// The one button of a screen that carries its purpose: large, filled with the accent colour.
class ProminentButton final : public QPushButton {
 public:
  explicit ProminentButton(const QString& title, QWidget* parent = nullptr);
  [[nodiscard]] QSize sizeHint() const override;
  [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

 protected:
  bool event(QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
};

/// An ordinary button in the style of the cards, of the usual size or with more room around its
/// title.
class PlainButton final : public QPushButton {
 public:
  enum class Size { usual, large };
  explicit PlainButton(const QString& title, Size size = Size::usual, QWidget* parent = nullptr);
  [[nodiscard]] QSize sizeHint() const override;

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  Size size_;
};

/// A button that looks like a link.
class LinkButton final : public QPushButton {
 public:
  explicit LinkButton(const QString& title, QWidget* parent = nullptr);
  [[nodiscard]] QSize sizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;
};

/// A flat button of a toolbar: icon and title, no border, reached by Tab.
class ToolbarButton final : public QToolButton {
 public:
  ToolbarButton(const QString& title, Symbol symbol, QWidget* parent = nullptr);
  [[nodiscard]] QSize sizeHint() const override;

 protected:
  bool event(QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  void fitIcon();
};

/// The header of a section that can be folded away. Checked means open; assistive tools are told
/// so in words.
class DisclosureButton final : public QPushButton {
 public:
  explicit DisclosureButton(const QString& title, QWidget* parent = nullptr);
  [[nodiscard]] QSize sizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;
};

/// Draws the ring that shows where the keyboard's focus is.
void drawFocusRing(QPainter& painter, const QRectF& around, double radius, const QPalette& palette);

}  // namespace tarnwick
