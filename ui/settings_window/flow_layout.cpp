#include "ui/settings_window/flow_layout.h"

#include <QSpacerItem>
#include <QStyle>
#include <QWidget>
#include <algorithm>

namespace tarnwick {
namespace {

bool expands(const QLayoutItem* item) {
  return item->expandingDirections().testFlag(Qt::Horizontal);
}

int heightOf(const std::vector<QLayoutItem*>& line) {
  int height = 0;
  for (const QLayoutItem* item : line) height = std::max(height, item->sizeHint().height());
  return height;
}

}  // namespace

FlowLayout::FlowLayout() {
  setContentsMargins(0, 0, 0, 0);
}

FlowLayout::~FlowLayout() = default;

void FlowLayout::addStretch() {
  addItem(new QSpacerItem(0, 0, QSizePolicy::Expanding, QSizePolicy::Minimum));
}

void FlowLayout::addItem(QLayoutItem* item) {
  items_.emplace_back(item);
}

int FlowLayout::count() const {
  return static_cast<int>(items_.size());
}

QLayoutItem* FlowLayout::itemAt(int index) const {
  return index >= 0 && index < count() ? items_[static_cast<std::size_t>(index)].get() : nullptr;
}

QLayoutItem* FlowLayout::takeAt(int index) {
  if (index < 0 || index >= count()) return nullptr;
  const auto position = items_.begin() + index;
  QLayoutItem* taken = position->release();
  items_.erase(position);
  return taken;
}

std::vector<FlowLayout::Line> FlowLayout::linesAt(int width) const {
  std::vector<Line> lines(1);
  int used = 0;
  for (const auto& item : items_) {
    const bool isHidden = item->widget() != nullptr && item->isEmpty();
    if (isHidden) continue;
    const int wanted = item->sizeHint().width() + (lines.back().empty() ? 0 : spacing());
    if (used + wanted > width && !lines.back().empty()) {
      lines.emplace_back();
      used = 0;
    }
    used += item->sizeHint().width() + (lines.back().empty() ? 0 : spacing());
    lines.back().push_back(item.get());
  }
  return lines;
}

int FlowLayout::heightForWidth(int width) const {
  int height = -spacing();
  for (const Line& line : linesAt(width)) height += heightOf(line) + spacing();
  return std::max(height, 0);
}

QSize FlowLayout::sizeHint() const {
  int width = -spacing();
  int height = 0;
  for (const auto& item : items_) {
    width += item->sizeHint().width() + spacing();
    height = std::max(height, item->sizeHint().height());
  }
  return {std::max(width, 0), height};
}

QSize FlowLayout::minimumSize() const {
  QSize size;
  for (const auto& item : items_) size = size.expandedTo(item->minimumSize());
  return size;
}

void FlowLayout::setGeometry(const QRect& rectangle) {
  QLayout::setGeometry(rectangle);
  int top = rectangle.top();
  for (const Line& line : linesAt(rectangle.width())) {
    const int height = heightOf(line);
    place(line, QRect(rectangle.left(), top, rectangle.width(), height));
    top += height + spacing();
  }
}

void FlowLayout::place(const Line& line, const QRect& room) const {
  int rest = room.width() + spacing();
  for (const QLayoutItem* item : line) rest -= item->sizeHint().width() + spacing();
  const auto greedy = static_cast<int>(std::ranges::count_if(line, expands));
  const int extra = greedy > 0 ? std::max(rest, 0) / greedy : 0;
  const Qt::LayoutDirection direction =
      parentWidget() != nullptr ? parentWidget()->layoutDirection() : Qt::LeftToRight;
  int left = room.left();
  for (QLayoutItem* item : line) {
    const int wanted = item->sizeHint().width() + (expands(item) ? extra : 0);
    const int width = std::min(wanted, room.width());
    const int height = std::min(item->sizeHint().height(), room.height());
    const QRect box(left, room.top() + (room.height() - height) / 2, width, height);
    item->setGeometry(QStyle::visualRect(direction, room, box));
    left += width + spacing();
  }
}

}  // namespace tarnwick
