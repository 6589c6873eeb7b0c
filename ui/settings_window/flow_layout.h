#pragma once

#include <QLayout>
#include <QRect>
#include <memory>
#include <vector>

namespace tarnwick {

/// A row that goes on in the next line when its items do not fit side by side. Items that want to
/// expand horizontally (a stretch, for one) share what their line leaves over.
class FlowLayout final : public QLayout {
 public:
  FlowLayout();
  ~FlowLayout() override;

  void addStretch();

  void addItem(QLayoutItem* item) override;
  [[nodiscard]] int count() const override;
  [[nodiscard]] QLayoutItem* itemAt(int index) const override;
  QLayoutItem* takeAt(int index) override;

  [[nodiscard]] Qt::Orientations expandingDirections() const override { return Qt::Horizontal; }
  [[nodiscard]] bool hasHeightForWidth() const override { return true; }
  [[nodiscard]] int heightForWidth(int width) const override;
  [[nodiscard]] QSize sizeHint() const override;
  [[nodiscard]] QSize minimumSize() const override;
  void setGeometry(const QRect& rectangle) override;

 private:
  using Line = std::vector<QLayoutItem*>;

  [[nodiscard]] std::vector<Line> linesAt(int width) const;
  void place(const Line& line, const QRect& room) const;

  std::vector<std::unique_ptr<QLayoutItem>> items_;
};

}  // namespace tarnwick
