#include <QApplication>
#include <gtest/gtest.h>

// Without a display, and in the same style on every machine.
int main(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  qputenv("QT_STYLE_OVERRIDE", "fusion");
  testing::InitGoogleTest(&argc, argv);
  const QApplication application(argc, argv);
  // As in the program; otherwise closing a window would end the event loops of later tests.
  QApplication::setQuitOnLastWindowClosed(false);
  return RUN_ALL_TESTS();
}
