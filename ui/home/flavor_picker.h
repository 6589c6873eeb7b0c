#pragma once

#include <QComboBox>
#include <string>

namespace tarnwick {

/// The flavors in catalog order.
class FlavorPicker final : public QComboBox {
 public:
  explicit FlavorPicker(QWidget* parent = nullptr);

  /// Shows this flavor, or none for an unknown id.
  void showFlavor(const std::string& id);
  [[nodiscard]] std::string flavorAt(int index) const;
  [[nodiscard]] QSize minimumSizeHint() const override;

 protected:
  void wheelEvent(QWheelEvent* event) override;
};

}  // namespace tarnwick
