#include "ui/settings_window/password_section.h"

#include <QEvent>
#include <QHBoxLayout>

#include "ui/common/buttons.h"
#include "ui/settings_window/flow_layout.h"

namespace tarnwick {
namespace {

/// What the user is to know while the keychain is of no use.
QString keychainSentence(bool hasPassword) {
  if (hasPassword) {
    return QStringLiteral(
        "At present the keychain does not answer or is locked: this password is kept only until "
        "Tarnwick quits.");
  }
  return QStringLiteral(
      "At present the keychain does not answer or is locked: without it there is no password, and "
      "a new one is kept only until Tarnwick quits.");
}

QFont passwordFont() {
  QFont font = fontFor(FontRole::mono);
  const QFont body = fontFor(FontRole::body);
  if (body.pointSizeF() > 0) {
    font.setPointSizeF(body.pointSizeF());
  } else {
    font.setPixelSize(body.pixelSize());
  }
  return font;
}

}  // namespace

PasswordLabel::PasswordLabel(QWidget* parent) : QLabel(parent) {
  setTextFormat(Qt::PlainText);
  setFont(passwordFont());
  hidePassword();
}

void PasswordLabel::showPassword(const QString& password) {
  setText(password);
  setAccessibleName(QStringLiteral("Password: %1").arg(password));
}

void PasswordLabel::hidePassword() {
  setText(QString(10, QChar(0x2022)));
  setAccessibleName(QStringLiteral("Password, hidden"));
}

bool PasswordLabel::event(QEvent* event) {
  const bool handled = QLabel::event(event);
  if (changesTheme(*event) && font() != passwordFont()) setFont(passwordFont());
  return handled;
}

PasswordSection::PasswordSection(SettingsStore& settings, SecretClipboard clipboard)
    : SettingsSection(QStringLiteral("Password")),
      settings_(settings),
      clipboard_(clipboard),
      require_(new QCheckBox(QStringLiteral("Require a password"))) {
  rows().addWidget(require_);
  row_ = makePasswordRow();
  rows().addWidget(row_);
  caption_ = addCaption(QStringLiteral(
      "Stored in your Keychain. The app signs in for you; you only need it for a browser."));
  sessionOnly_ = addCaption(QString());
  sessionOnly_->setColorRole(ColorRole::orange);
  connect(require_, &QCheckBox::toggled, this,
          [this](bool on) { settings_.setRequirePassword(on); });
  // Somebody who looks here may just have unlocked it.
  settings_.retryKeychain();
}

QWidget* PasswordSection::makePasswordRow() {
  auto* row = new QWidget;
  auto* items = new FlowLayout;
  row->setLayout(items);
  password_ = new PasswordLabel;
  show_ = new PlainButton(QString());
  copy_ = new PlainButton(QStringLiteral("Copy"));
  copy_->setAccessibleDescription(QStringLiteral("Copies the password for a minute"));
  auto* renew = new PlainButton(QStringLiteral("New password"));
  items->addWidget(new QLabel(QStringLiteral("User: linux")));
  items->addWidget(password_);
  items->addStretch();
  // The buttons stay together when they do not fit beside the password.
  auto* buttons = new QWidget;
  auto* together = new QHBoxLayout(buttons);
  together->setContentsMargins(0, 0, 0, 0);
  for (QPushButton* button : std::initializer_list<QPushButton*>{show_, copy_, renew})
    together->addWidget(button);
  items->addWidget(buttons);
  connect(show_, &QPushButton::clicked, this, [this] {
    showPassword_ = !showPassword_;
    render();
  });
  connect(copy_, &QPushButton::clicked, this,
          [this] { clipboard_.copy(QString::fromStdString(settings_.password.get())); });
  connect(renew, &QPushButton::clicked, this, [this] { settings_.regeneratePassword(); });
  return row;
}

void PasswordSection::render() {
  const bool required = settings_.requirePassword();
  showChecked(*require_, required);
  row_->setVisible(required);
  caption_->setVisible(required);
  sessionOnly_->setText(keychainSentence(!settings_.password.get().empty()));
  sessionOnly_->setVisible(required &&
                           settings_.passwordStorage.get() == PasswordStorage::sessionOnly);
  if (showPassword_) {
    password_->showPassword(QString::fromStdString(settings_.password.get()));
  } else {
    password_->hidePassword();
  }
  show_->setText(showPassword_ ? QStringLiteral("Hide") : QStringLiteral("Show"));
  copy_->setEnabled(!settings_.password.get().empty());
}

}  // namespace tarnwick
