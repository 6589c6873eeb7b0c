#pragma once

#include <QCheckBox>
#include <QLabel>
#include <QPushButton>

#include "core/settings/settings_store.h"
#include "ui/settings_window/secret_clipboard.h"
#include "ui/settings_window/settings_section.h"

namespace tarnwick {

/// The desktop's password in clear, or bullets. While hidden, no trace of the password is in the
/// label, nor its length.
class PasswordLabel final : public QLabel {
 public:
  explicit PasswordLabel(QWidget* parent = nullptr);
  void showPassword(const QString& password);
  void hidePassword();

 protected:
  bool event(QEvent* event) override;
};

/// Whether the desktop asks for a password, and that password. It starts hidden.
class PasswordSection final : public SettingsSection {
 public:
  PasswordSection(SettingsStore& settings, SecretClipboard clipboard);
  void render() override;

 private:
  QWidget* makePasswordRow();

  SettingsStore& settings_;
  SecretClipboard clipboard_;
  bool showPassword_ = false;
  QCheckBox* require_;
  QWidget* row_;
  PasswordLabel* password_;
  QPushButton* show_;
  QPushButton* copy_;
  TextLabel* caption_;
  TextLabel* sessionOnly_;
};

}  // namespace tarnwick
