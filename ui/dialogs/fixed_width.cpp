#include "ui/dialogs/fixed_width.h"

#include <QLayout>
#include <algorithm>

namespace tarnwick {

void fitHeight(QWidget& widget, int width) {
  const QLayout& layout = *widget.layout();
  const int needed = layout.hasHeightForWidth() ? layout.totalHeightForWidth(width) : 0;
  widget.setFixedSize(width, std::max(needed, layout.totalMinimumSize().height()));
}

}  // namespace tarnwick
