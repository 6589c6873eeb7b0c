#include "app/single_instance.h"

#include <QEventLoop>
#include <QTimer>
#include <gtest/gtest.h>
#include <thread>

#include "tests/support/temporary_folder.h"

namespace tarnwick {
namespace {

class OneProcess : public testing::Test {
 protected:
  OneProcess() { qputenv("XDG_RUNTIME_DIR", runtime.path().c_str()); }
  /// The second process's part, on a thread of its own, since the first one's runs here.
  SingleInstance::Role enterAgain() {
    auto role = SingleInstance::Role::otherIsSilent;
    QEventLoop loop;
    std::thread other([&] {
      role = SingleInstance(QString::fromStdString(folder.path())).enter([] {});
      QMetaObject::invokeMethod(&loop, &QEventLoop::quit, Qt::QueuedConnection);
    });
    loop.exec();
    other.join();
    return role;
  }

  TemporaryFolder folder;
  TemporaryFolder runtime;
  int raised = 0;
};

TEST_F(OneProcess, TheSecondRaisesTheFirst) {
  SingleInstance first(QString::fromStdString(folder.path()));
  EXPECT_EQ(first.enter([this] { ++raised; }), SingleInstance::Role::first);
  EXPECT_EQ(enterAgain(), SingleInstance::Role::raisedOther);
  EXPECT_EQ(enterAgain(), SingleInstance::Role::raisedOther);
  EXPECT_EQ(raised, 2);
}

TEST_F(OneProcess, OtherDataIsAnotherMatterAndWhatAnEndedProcessLeftIsNone) {
  const TemporaryFolder elsewhere;
  {
    SingleInstance first(QString::fromStdString(folder.path()));
    EXPECT_EQ(first.enter([] {}), SingleInstance::Role::first);
    SingleInstance other(QString::fromStdString(elsewhere.path()));
    EXPECT_EQ(other.enter([] {}), SingleInstance::Role::first);
  }
  SingleInstance next(QString::fromStdString(folder.path()));
  EXPECT_EQ(next.enter([] {}), SingleInstance::Role::first);
}

}  // namespace
}  // namespace tarnwick
