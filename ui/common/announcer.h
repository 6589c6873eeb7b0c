#pragma once

#include <QWidget>

namespace tarnwick {

/// Speaks short sentences to assistive tools: a status element without a picture, whose name is the
/// latest sentence.
class Announcer final : public QWidget {
 public:
  explicit Announcer(QWidget* parent);

  /// Repeating the latest sentence says nothing; an empty one forgets it.
  void announce(const QString& sentence);
  [[nodiscard]] QString latest() const { return accessibleName(); }
};

}  // namespace tarnwick
