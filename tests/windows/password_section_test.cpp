#include "ui/settings_window/password_section.h"

#include <QClipboard>
#include <QMimeData>

#include "tests/windows/settings_window_fixture.h"

namespace tarnwick {
namespace {

class PasswordSectionTest : public SettingsWindowTest {
 protected:
  PasswordLabel& password() {
    for (auto* label : window->findChildren<QLabel*>()) {
      if (auto* found = dynamic_cast<PasswordLabel*>(label)) return *found;
    }
    std::abort();
  }
  // Everything that the eye or an assistive tool can read in the window.
  QString everythingReadable() {
    QString all;
    for (QWidget* widget : window->findChildren<QWidget*>()) {
      const QAccessibleInterface* accessible = QAccessible::queryAccessibleInterface(widget);
      for (const auto part : {QAccessible::Name, QAccessible::Description, QAccessible::Value}) {
        all += accessible->text(part) + "\n";
      }
      if (const auto* label = qobject_cast<QLabel*>(widget)) all += label->text() + "\n";
    }
    return all;
  }
};

TEST_F(PasswordSectionTest, PasswordRowIsThereOnlyWhileRequired) {
  EXPECT_EQ(shown(*window, "Copy"), nullptr);
  EXPECT_FALSE(shownTexts(*window).contains("User: linux"));
  press("Require a password");
  EXPECT_TRUE(settings.requirePassword());
  EXPECT_NE(shown(*window, "Copy"), nullptr);
  EXPECT_FALSE(settings.password.get().empty());
  press("Require a password");
  EXPECT_FALSE(settings.requirePassword());
  EXPECT_EQ(shown(*window, "Copy"), nullptr);
}

TEST_F(PasswordSectionTest, PasswordIsNowhereUntilItIsShown) {
  secrets.put(SettingsStore::passwordAccount, "ab12");
  settings.setRequirePassword(true);
  settings.password = "ab12";
  settle();
  EXPECT_EQ(password().text(), "••••••••••");
  EXPECT_FALSE(everythingReadable().contains("ab12"));
  press("Show");
  EXPECT_EQ(password().text(), "ab12");
  EXPECT_TRUE(password().accessibleName().contains("ab12"));
  press("Hide");
  EXPECT_FALSE(everythingReadable().contains("ab12"));
  press("Show");
  open();
  EXPECT_EQ(password().text(), "••••••••••") << "a new window starts hidden";
}

TEST_F(PasswordSectionTest, CopiesThePasswordAsASecret) {
  press("Require a password");
  press("Copy");
  const QClipboard& clipboard = *QApplication::clipboard();
  EXPECT_EQ(clipboard.text().toStdString(), settings.password.get());
  EXPECT_EQ(clipboard.mimeData()->data("x-kde-passwordManagerHint"), "secret");
  window->close();
  settle();
  mainThread.advance(std::chrono::seconds(61));
  EXPECT_EQ(clipboard.text(), "") << "also when the window is closed meanwhile";
}

TEST_F(PasswordSectionTest, NewPasswordReplacesTheOldOne) {
  press("Require a password");
  press("Show");
  const std::string before = settings.password.get();
  press("New password");
  EXPECT_NE(settings.password.get(), before);
  EXPECT_EQ(password().text().toStdString(), settings.password.get());
}

TEST_F(PasswordSectionTest, SaysWhenThePasswordIsNotKept) {
  const QString sentence =
      "At present the keychain does not answer or is locked: this password is kept only until "
      "Tarnwick quits.";
  press("Require a password");
  EXPECT_FALSE(shownTexts(*window).contains(sentence));
  secrets.refuse(SecretStatus::locked);
  press("New password");
  EXPECT_TRUE(shownTexts(*window).contains(sentence));
  settings.password = "";
  settle();
  EXPECT_TRUE(shownTexts(*window).filter("without it there is no password").size() == 1);

  secrets.unlock();
  open();
  settle();
  EXPECT_TRUE(shownTexts(*window).filter("At present the keychain").isEmpty())
      << "it is asked again when the window opens";
}

}  // namespace
}  // namespace tarnwick
