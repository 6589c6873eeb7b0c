#pragma once

#include <QScrollArea>

namespace tarnwick {

/// Scrolls a page up and down, and is never narrower than the page can be.
class PageScroll final : public QScrollArea {
 public:
  explicit PageScroll(QWidget* page);
  [[nodiscard]] QSize minimumSizeHint() const override;
  [[nodiscard]] QSize sizeHint() const override;

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;
};

}  // namespace tarnwick
