#include <QMessageBox>
#include <QPlainTextEdit>
#include <QPointer>
#include <QPushButton>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/windows/windows_fixture.h"
#include "ui/common/theme.h"
#include "ui/dialogs/install_offer.h"
#include "ui/dialogs/keys_help.h"
#include "ui/dialogs/port_conflict_sheet.h"
#include "ui/dialogs/remove_flavor.h"

namespace tarnwick {
namespace {

using testing::Contains;

class DialogsTest : public testing::Test, public WindowsWorld {
 protected:
  DialogsTest() {
    parent.show();
    settle();
  }

  QMessageBox* openBox() { return parent.findChild<QMessageBox*>(); }

  PortConflictSheet* openSheet(const std::string& holder = "COMMAND  PID\nnode     123") {
    controller.portConflict = PortConflict{"one", 3000, holder, 3100, 3101};
    auto* sheet = new PortConflictSheet(controller, *controller.portConflict.get(), &parent);
    sheet->open();
    settle();
    return sheet;
  }

  QWidget parent;
};

TEST_F(DialogsTest, KeysHelpKeepsItsWidthAndGrowsWithTheFont) {
  KeysHelp help;
  help.show();
  settle();
  EXPECT_EQ(help.width(), 420);
  EXPECT_EQ(cutWidgets(help), QStringList());
  const int usualHeight = help.height();
  const LargerFont larger(1.5);
  settle();
  EXPECT_EQ(help.width(), 420);
  EXPECT_GT(help.height(), usualHeight) << "a change of the font reaches an open panel";
  EXPECT_EQ(cutWidgets(help), QStringList());
}

TEST_F(DialogsTest, KeysHelpSaysWhatItShouldAndWhichKeyStaysOurs) {
  KeysHelp help;
  help.show();
  const QStringList texts = shownTexts(help);
  ASSERT_EQ(texts.size(), 7);
  EXPECT_EQ(texts[0], "Keys and the web desktop");
  EXPECT_EQ(texts[1], "• Click inside the desktop first so it receives the keyboard.");
  EXPECT_EQ(texts[5], "• The microphone is not enabled.");
  EXPECT_TRUE(texts[6].contains("F11"));
  int headlines = 0;
  for (const QLabel* label : help.findChildren<QLabel*>()) {
    headlines += label->font() == fontFor(FontRole::headline);
  }
  EXPECT_EQ(headlines, 1);
}

TEST_F(DialogsTest, SheetTellsThePortItsHolderAndTheWayOut) {
  const auto* sheet = openSheet();
  EXPECT_TRUE(sheet->isModal());
  EXPECT_EQ(shownTexts(*sheet),
            QStringList({"Port 3000 is already in use",
                         "Another program is listening there (from lsof -nP -iTCP:3000):",
                         "You can quit that program, or use ports 3100 and 3101 instead."}));
  const auto* holder = sheet->findChild<QPlainTextEdit*>();
  EXPECT_EQ(holder->toPlainText(), "COMMAND  PID\nnode     123");
  EXPECT_TRUE(holder->textInteractionFlags().testFlag(Qt::TextSelectableByMouse));
  EXPECT_NE(shown(*sheet, "Cancel"), nullptr);
  EXPECT_EQ(namelessControls(*sheet), QStringList());
}

TEST_F(DialogsTest, SheetKeepsItsSizeHoweverLongTheHolder) {
  const QSize small = openSheet()->size();
  QString lines;
  for (int i = 0; i < 200; ++i)
    lines += QString("node %1 with a very long line ").arg(i).repeated(9);
  const auto* sheet = openSheet(lines.toStdString());
  EXPECT_EQ(sheet->size(), small);
  EXPECT_EQ(sheet->width(), 460);
  EXPECT_EQ(sheet->findChild<QPlainTextEdit*>()->height(), 100);
  EXPECT_EQ(cutWidgets(*sheet), QStringList());
}

TEST_F(DialogsTest, ReturnUsesTheFreePairAndLaunches) {
  auto* sheet = openSheet();
  QTest::keyClick(sheet, Qt::Key_Return);
  EXPECT_FALSE(sheet->isVisible());
  EXPECT_EQ(controller.settings.httpPort.get(), 3100);
  EXPECT_EQ(controller.settings.httpsPort.get(), 3101);
  EXPECT_FALSE(controller.portConflict.get().has_value());
  EXPECT_EQ(controller.phase.get(), Phase::busy);
}

TEST_F(DialogsTest, EveryOtherWayOutOnlyDismisses) {
  const std::vector<std::function<void(PortConflictSheet&)>> ways = {
      [](PortConflictSheet& sheet) { shown(sheet, "Cancel")->click(); },
      [](PortConflictSheet& sheet) { QTest::keyClick(&sheet, Qt::Key_Escape); },
      [](PortConflictSheet& sheet) { sheet.close(); },
  };
  for (const auto& leave : ways) {
    auto* sheet = openSheet();
    leave(*sheet);
    EXPECT_FALSE(sheet->isVisible());
    EXPECT_FALSE(controller.portConflict.get().has_value());
    EXPECT_EQ(controller.settings.httpPort.get(), 3000);
    EXPECT_EQ(controller.phase.get(), Phase::idle);
  }
}

TEST_F(DialogsTest, SheetOfAnOldConflictGoesWithoutDismissingTheNewOne) {
  auto* sheet = openSheet();
  controller.portConflict = PortConflict{"two", 3001, "", 3200, 3201};
  settle();
  EXPECT_FALSE(sheet->isVisible());
  ASSERT_TRUE(controller.portConflict.get().has_value());
  EXPECT_EQ(controller.portConflict.get()->id, "two");
}

TEST_F(DialogsTest, InstallOfferAsksOnceAndInstallsWhenTheUserAgrees) {
  controller.askInstall = true;
  showInstallOffer(&parent, controller);
  showInstallOffer(&parent, controller);
  ASSERT_EQ(parent.findChildren<QMessageBox*>().size(), 1);
  EXPECT_EQ(openBox()->text(), "Install Colima and Docker?");
  EXPECT_EQ(openBox()->informativeText(),
            "This runs “brew install colima docker” with Homebrew. It downloads a few hundred MB "
            "and does not need a password.");
  shown(*openBox(), "Install")->click();
  EXPECT_FALSE(controller.askInstall.get());
  EXPECT_TRUE(controller.installing.get());
  settle();

  controller.askInstall = true;
  showInstallOffer(&parent, controller);
  EXPECT_NE(openBox(), nullptr) << "a later offer is shown again";
}

TEST_F(DialogsTest, InstallOfferLeftByAnyOtherMeansInstallsNothing) {
  for (const auto& leave : std::vector<std::function<void(QMessageBox&)>>{
           [](QMessageBox& box) { shown(box, "Cancel")->click(); },
           [](QMessageBox& box) { QTest::keyClick(&box, Qt::Key_Escape); },
           [](QMessageBox& box) { box.close(); }}) {
    controller.askInstall = true;
    showInstallOffer(&parent, controller);
    leave(*openBox());
    EXPECT_FALSE(controller.askInstall.get());
    EXPECT_EQ(controller.phase.get(), Phase::idle);
    settle();
  }
}

TEST_F(DialogsTest, RemovingAFlavorSaysWhatWillBeLost) {
  struct Case {
    const char* stored;
    const char* title;
    const char* volume;
  };
  for (const Case& c : {Case{"alpine-xfce", "Remove Standard?", "“tarnwick-config-alpine-xfce”"},
                        Case{"no-such", "Remove Standard?", "“tarnwick-config-alpine-xfce”"}}) {
    controller.settings.flavorID = std::string(c.stored);
    confirmRemoveFlavor(&parent, controller, dialogs);
    const Confirmation& question = dialogs.questions.back();
    EXPECT_EQ(question.title, c.title);
    EXPECT_EQ(question.message, QString("This deletes the container “tarnwick” (if it runs this "
                                        "flavor) and the volume ") +
                                    c.volume +
                                    " with every file in that desktop's home folder. Other flavors "
                                    "are not touched.");
    EXPECT_EQ(question.confirmTitle, "Delete container and volume");
  }
  settle();
  EXPECT_EQ(runner.count({"docker", "volume", "rm"}), 0U) << "the user did not agree";
}

TEST_F(DialogsTest, RemovingAFlavorIsNeverWhatReturnDoes) {
  QtDialogService real;
  confirmRemoveFlavor(&parent, controller, real);
  settle();
  QTest::keyClick(openBox(), Qt::Key_Return);
  settle();
  EXPECT_EQ(runner.count({"docker", "volume", "rm"}), 0U);

  confirmRemoveFlavor(&parent, controller, real);
  shown(*openBox(), "Delete container and volume")->click();
  settle();
  EXPECT_EQ(runner.count({"docker", "volume", "rm", "tarnwick-config-alpine-xfce"}), 1U);
}

}  // namespace
}  // namespace tarnwick
