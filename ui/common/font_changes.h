#pragma once

#include <QApplication>
#include <QObject>

namespace tarnwick {

/// Tells every widget of a change of the user's font. The toolkit tells windows only, and texts
/// that have a size of their own would keep the old one. One per application, for as long as it
/// has windows.
class FontChanges final : public QObject {
 public:
  explicit FontChanges(QApplication& application);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;
};

}  // namespace tarnwick
