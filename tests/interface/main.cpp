#include <QApplication>
#include <gtest/gtest.h>

// Without a display, and in the same style on every machine.
int main(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  qputenv("QT_STYLE_OVERRIDE", "fusion");
  testing::InitGoogleTest(&argc, argv);
  const QApplication application(argc, argv);
  return RUN_ALL_TESTS();
}
