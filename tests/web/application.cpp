#include <QtCore/QCoreApplication>
#include <QtWidgets/QApplication>
#include <cstdlib>
#include <gtest/gtest.h>
#include <unistd.h>

// The engine needs an application, and a list of the cases needs neither.
int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  if (testing::GTEST_FLAG(list_tests)) return RUN_ALL_TESTS();
  setenv("QT_QPA_PLATFORM", "offscreen", 1);
  // A machine without a camera has none to deny.
  setenv("QTWEBENGINE_CHROMIUM_FLAGS", "--use-fake-device-for-media-stream", 0);
  // The engine does not start as root with its sandbox.
  if (geteuid() == 0) setenv("QTWEBENGINE_DISABLE_SANDBOX", "1", 0);
  const QApplication application(argc, argv);
  return RUN_ALL_TESTS();
}
