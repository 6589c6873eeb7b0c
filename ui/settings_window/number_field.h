#pragma once

#include <QLineEdit>
#include <QString>
#include <cstdint>
#include <optional>

namespace tarnwick {

/// The integer that all of `text` spells, in plain decimal digits with or without a sign; spaces
/// around it don't count.
[[nodiscard]] std::optional<std::int64_t> parseInteger(const QString& text);

/// A field for an integer of any size, without digit grouping. Text that is none changes nothing,
/// and leaving the field brings the number back.
class NumberField : public QLineEdit {
  Q_OBJECT

 public:
  explicit NumberField(QWidget* parent = nullptr);
  /// Shows the number, unless the user is typing just that number.
  void show(std::int64_t number);
  using QLineEdit::show;

 signals:
  /// What the user typed reads as this integer now.
  void typed(qint64 number);

 private:
  std::int64_t number_ = 0;
};

}  // namespace tarnwick
