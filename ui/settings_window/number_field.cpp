#include "ui/settings_window/number_field.h"

#include <charconv>
#include <string>

namespace tarnwick {

std::optional<std::int64_t> parseInteger(const QString& text) {
  std::string digits = text.trimmed().toStdString();
  if (digits.starts_with('+') && !digits.starts_with("+-")) digits.erase(0, 1);
  std::int64_t number = 0;
  const char* end = digits.data() + digits.size();
  const auto [stop, error] = std::from_chars(digits.data(), end, number);
  if (error != std::errc() || stop != end) return std::nullopt;
  return number;
}

NumberField::NumberField(QWidget* parent) : QLineEdit(parent) {
  setText(QString::number(number_));
  // Not only what is typed: assistive tools replace the text as a whole.
  connect(this, &QLineEdit::textChanged, this, [this](const QString& text) {
    const auto number = parseInteger(text);
    if (!number || *number == number_) return;
    number_ = *number;
    emit typed(number_);
  });
  connect(this, &QLineEdit::editingFinished, this, [this] { setText(QString::number(number_)); });
}

void NumberField::show(std::int64_t number) {
  const bool isNews = number != number_;
  number_ = number;
  const bool isTyping = hasFocus() && isModified();
  if (parseInteger(text()) == number || (isTyping && !isNews)) return;
  setText(QString::number(number));
}

}  // namespace tarnwick
