#include "ui/common/window_opener.h"

#include <utility>

namespace tarnwick {

Windows::~Windows() {
  closeAll();
}

void Windows::closeAll() {
  for (auto& [id, entry] : entries_) delete entry.window.data();
}

void Windows::add(const std::string& id, std::function<QWidget*()> make) {
  entries_[id].make = std::move(make);
}

void Windows::openWindow(const std::string& id) {
  const auto found = entries_.find(id);
  if (found == entries_.end()) return;
  Entry& entry = found->second;
  if (entry.window.isNull()) entry.window = entry.make();
  QWidget& window = *entry.window;
  if (window.isMinimized()) window.setWindowState(window.windowState() & ~Qt::WindowMinimized);
  window.show();
  window.raise();
  window.activateWindow();
}

QWidget* Windows::find(const std::string& id) const {
  const auto found = entries_.find(id);
  return found == entries_.end() ? nullptr : found->second.window.data();
}

}  // namespace tarnwick
