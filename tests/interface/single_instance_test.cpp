#include "app/single_instance.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QLocalSocket>
#include <QTimer>
#include <atomic>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <memory>
#include <sys/stat.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <vector>

#include "app/wish_server.h"
#include "tests/support/temporary_folder.h"

namespace tarnwick {
namespace {

using namespace std::chrono_literals;
using Role = SingleInstance::Role;

class OneProcess : public testing::Test {
 protected:
  OneProcess() { qputenv("XDG_RUNTIME_DIR", runtime.path().c_str()); }

  /// Becomes the first, and answers as the tests want it.
  void begin(std::chrono::milliseconds patience = 5s) {
    first = std::make_unique<SingleInstance>(folder.path());
    ASSERT_EQ(first->enter({}).role, Role::first);
    server = std::make_unique<WishServer>(
        first->takeSocket(),
        [this](const Request& request, Reply reply) {
          requests.push_back(request);
          answer(reply);
        },
        patience);
  }
  /// A later process's part, on a thread of its own, since the first one's runs here.
  SingleInstance::Entry enterAgain(const Request& request, AnswerLimits limits = {}) {
    SingleInstance::Entry entry;
    QEventLoop loop;
    std::thread other([&] {
      entry = SingleInstance(folder.path(), limits).enter(request);
      QMetaObject::invokeMethod(&loop, &QEventLoop::quit, Qt::QueuedConnection);
    });
    loop.exec();
    other.join();
    return entry;
  }
  QString socketPath() const {
    return QString::fromStdString(InstanceLock(folder.path()).socketPath());
  }
  static bool runUntil(const std::function<bool()>& done) {
    QElapsedTimer clock;
    clock.start();
    while (!done() && clock.elapsed() < 10'000) {
      QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
    }
    return done();
  }

  TemporaryFolder folder;
  TemporaryFolder runtime;
  std::vector<Request> requests;
  std::function<void(const Reply&)> answer = [](const Reply& reply) { reply(Answer()); };
  std::unique_ptr<SingleInstance> first;
  std::unique_ptr<WishServer> server;
};

TEST_F(OneProcess, TakesTheWishesOfTheOthersAndAnswers) {
  begin();
  answer = [](const Reply& reply) { reply({ExitCode::notRunning, "Stopped."}); };
  const Request request{Wish::status, "token"};
  for (int i = 0; i < 2; ++i) {
    const auto entry = enterAgain(request);
    EXPECT_EQ(entry.role, Role::passedOn);
    EXPECT_EQ(entry.answer, Answer(ExitCode::notRunning, "Stopped."));
  }
  EXPECT_EQ(requests, (std::vector<Request>{request, request}));
}

TEST_F(OneProcess, IsFoundFromASessionWithoutARuntimeFolder) {
  begin();
  struct stat state = {};
  ASSERT_EQ(::stat(socketPath().toStdString().c_str(), &state), 0);
  EXPECT_EQ(state.st_mode & 0777, 0600);
  qunsetenv("XDG_RUNTIME_DIR");
  EXPECT_EQ(enterAgain({}).role, Role::passedOn);
}

TEST_F(OneProcess, OtherDataIsAnotherMatterAndWhatAnEndedProcessLeftIsNone) {
  const TemporaryFolder elsewhere;
  {
    SingleInstance other(folder.path());
    EXPECT_EQ(other.passOn({}).role, Role::first);
    EXPECT_EQ(other.enter({}).role, Role::first);
    EXPECT_EQ(SingleInstance(elsewhere.path()).enter({}).role, Role::first);
  }
  EXPECT_EQ(SingleInstance(folder.path()).enter({}).role, Role::first);
}

TEST_F(OneProcess, ThatIsKilledIsInNobodysWay) {
  int ready[2];
  ASSERT_EQ(::pipe(ready), 0);
  const pid_t child = ::fork();
  if (child == 0) {
    SingleInstance instance(folder.path());
    const char role = instance.enter({}).role == Role::first ? 'y' : 'n';
    [[maybe_unused]] const auto written = ::write(ready[1], &role, 1);
    ::pause();
  }
  char role = 0;
  ASSERT_EQ(::read(ready[0], &role, 1), 1);
  EXPECT_EQ(role, 'y');
  ::kill(child, SIGKILL);
  ::waitpid(child, nullptr, 0);
  EXPECT_TRUE(std::filesystem::exists(socketPath().toStdString()));
  begin();
  EXPECT_EQ(enterAgain({}).role, Role::passedOn);
}

TEST_F(OneProcess, ThatDoesNotListenYetIsWaitedFor) {
  InstanceLock early(folder.path());
  ASSERT_EQ(early.tryLock(), InstanceLock::State::held);
  std::atomic<bool> passedOn = false;
  std::thread late(
      [&] { passedOn = SingleInstance(folder.path()).enter({}).role == Role::passedOn; });
  std::this_thread::sleep_for(200ms);
  const WishServer opened(early.listen(), [](const Request&, const Reply& reply) { reply({}); });
  EXPECT_TRUE(runUntil([&] { return passedOn.load(); }));
  late.join();
}

TEST_F(OneProcess, ThatIsQuittingIsWaitedForByStartsOnly) {
  InstanceLock quitting(folder.path());
  ASSERT_EQ(quitting.tryLock(), InstanceLock::State::held);
  EXPECT_EQ(SingleInstance(folder.path(), {50ms, 10s, 10s}).passOn({}).role, Role::first);
  EXPECT_EQ(SingleInstance(folder.path(), {50ms, 10s, 100ms}).enter({}).role, Role::otherIsSilent);
  std::thread end([&] {
    std::this_thread::sleep_for(200ms);
    quitting.unlock();
  });
  EXPECT_EQ(SingleInstance(folder.path(), {50ms, 10s, 10s}).enter({}).role, Role::first);
  end.join();
}

TEST_F(OneProcess, ThatSaysNothingIsGivenUp) {
  first = std::make_unique<SingleInstance>(folder.path());
  ASSERT_EQ(first->enter({}).role, Role::first);
  // Its event loop does not take the request.
  EXPECT_EQ(enterAgain({}, {200ms, 10s, 10s}).role, Role::otherIsSilent);
}

TEST_F(OneProcess, ThatIsAtWorkIsWaitedForLonger) {
  begin();
  Reply kept;
  answer = [&](const Reply& reply) { kept = reply; };
  EXPECT_EQ(enterAgain({Wish::stop, {}}, {2s, 100ms, 10s}).answer.code, ExitCode::failed);
  // Nobody is there any more to hear it.
  kept(Answer());
  answer = [&](const Reply& reply) {
    QTimer::singleShot(300, qApp, [reply] { reply({ExitCode::done, "The desktop was stopped."}); });
  };
  EXPECT_EQ(enterAgain({Wish::stop, {}}, {100ms, 5s, 10s}).answer.text, "The desktop was stopped.");
}

TEST_F(OneProcess, BearsBadCallers) {
  begin(300ms);
  for (const QByteArray& sent :
       {QByteArray(), QByteArray("open"), QByteArray(1'000'000, 'x'), QByteArray("burn\n"),
        QByteArray("\n"), QByteArray("stop\0\n", 6)}) {
    QLocalSocket caller;
    caller.connectToServer(socketPath());
    caller.write(sent);
    EXPECT_TRUE(runUntil([&] { return caller.state() == QLocalSocket::UnconnectedState; }))
        << sent.left(20).toStdString();
  }
  EXPECT_TRUE(requests.empty());
  EXPECT_EQ(enterAgain({}).role, Role::passedOn);
}

TEST_F(OneProcess, BearsManyCallersThatSayNothingOrTooMuch) {
  begin(300ms);
  std::vector<std::unique_ptr<QLocalSocket>> crowd;
  for (int i = 0; i < 120; ++i) {
    crowd.push_back(std::make_unique<QLocalSocket>());
    crowd.back()->connectToServer(socketPath());
    if (i >= 90) crowd.back()->write(QByteArray(1'000'000, 'x'));
  }
  EXPECT_EQ(enterAgain({}).role, Role::passedOn);
  EXPECT_EQ(requests.size(), 1U);
}

TEST_F(OneProcess, StartsWhereNothingCanBeWritten) {
  // Also the superuser makes no file in a folder that is none.
  const std::string none = folder.path() + "/file";
  std::ofstream(none) << "x";
  SingleInstance instance(none);
  EXPECT_EQ(instance.enter({}).role, Role::first);
  // The session's folder takes the lock then.
  EXPECT_EQ(SingleInstance(none, {100ms, 100ms, 100ms}).enter({}).role, Role::otherIsSilent);
  qputenv("XDG_RUNTIME_DIR", none.c_str());
  EXPECT_EQ(SingleInstance(none).enter({}).role, Role::first);
}

}  // namespace
}  // namespace tarnwick
