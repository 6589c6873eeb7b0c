#include <QApplication>
#include <gtest/gtest.h>

#include "ui/common/font_changes.h"

// The windows are tested without a display, as the same style on every machine.
int main(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  qputenv("QT_STYLE_OVERRIDE", "fusion");
  testing::InitGoogleTest(&argc, argv);
  QApplication application(argc, argv);
  const tarnwick::FontChanges fontChanges(application);
  return RUN_ALL_TESTS();
}
