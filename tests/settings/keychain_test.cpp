#include "core/settings/keychain.h"

#include <atomic>
#include <gmock/gmock.h>
#include <thread>

#include "tests/support/memory_secret_service.h"
#include "tests/support/run_task.h"
#include "tests/support/virtual_worker_queue.h"

namespace tarnwick {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;

class KeychainTest : public testing::Test {
 protected:
  SecretAnswer get() {
    return runToEnd(mainThread_, keychain_.get("account"))
        .value_or(SecretAnswer(SecretStatus::unavailable));
  }
  SecretStatus set(const std::string& value) {
    return runToEnd(mainThread_, keychain_.set(value, "account")).value();
  }

  VirtualMainThread mainThread_;
  VirtualWorkerQueue workers_{mainThread_};
  MemorySecretService service_;
  Keychain keychain_{service_, workers_, mainThread_};
};

TEST_F(KeychainTest, SettingReplacesByDeletingAndAdding) {
  EXPECT_EQ(get().status, SecretStatus::missing);
  EXPECT_EQ(set("one"), SecretStatus::found);
  EXPECT_EQ(set("zwei äöü"), SecretStatus::found);
  EXPECT_THAT(service_.items("account"), ElementsAre("zwei äöü"));
  EXPECT_EQ(get().bytes, "zwei äöü");
  EXPECT_THAT(service_.calls(), ElementsAre("find", "remove", "add", "remove", "add", "find"));
}

TEST_F(KeychainTest, BytesThatAreNotUtf8ReadAsMissing) {
  for (const char* bytes : {"\xFF", "abc\xC3", "\xC0\xAF", "\xED\xA0\x80", "a\x80z"}) {
    service_.put("account", bytes);
    const SecretAnswer answer = get();
    EXPECT_EQ(answer.status, SecretStatus::missing);
    EXPECT_EQ(answer.bytes, "");
  }
}

TEST_F(KeychainTest, RefusalsAreToldApartFromMissingItems) {
  service_.refuse(SecretStatus::locked);
  EXPECT_EQ(get().status, SecretStatus::locked);
  service_.refuse(SecretStatus::unavailable);
  EXPECT_EQ(set("value"), SecretStatus::unavailable);
}

/// Takes a moment for each call and notices calls that overlap.
class SlowService final : public SecretService {
 public:
  std::atomic<int> inside = 0;
  std::atomic<bool> overlapped = false;
  std::atomic<int> calls = 0;
  std::string last;

  SecretAnswer find(const SecretKey&) override {
    work();
    return SecretAnswer(SecretStatus::found, last);
  }
  SecretStatus remove(const SecretKey&) override {
    work();
    return SecretStatus::missing;
  }
  SecretStatus add(const SecretKey&, const std::string& bytes) override {
    work();
    last = bytes;
    return SecretStatus::found;
  }

 private:
  void work() {
    if (++inside != 1) overlapped = true;
    std::this_thread::sleep_for(1ms);
    --inside;
    ++calls;
  }
};

Task<void> setValue(Keychain& keychain, std::string value) {
  const SecretStatus status = co_await keychain.set(std::move(value), "account");
  EXPECT_EQ(status, SecretStatus::found);
}

TEST(KeychainOnThreads, AsksTheServiceForOneCallAtATimeInOrder) {
  VirtualMainThread mainThread;
  SlowService service;
  ThreadPool pool;
  Keychain keychain(service, pool, mainThread);
  TaskScope scope(mainThread);
  for (int i = 0; i < 20; ++i) scope.start(setValue(keychain, std::to_string(i)));
  EXPECT_TRUE(mainThread.waitUntil([&scope] { return scope.size() == 0; }));
  EXPECT_FALSE(service.overlapped);
  EXPECT_EQ(service.last, "19");
}

TEST(KeychainOnThreads, FinishesWhatWasAskedWhenTheProgramEnds) {
  VirtualMainThread mainThread;
  SlowService service;
  {
    ThreadPool pool;
    {
      Keychain keychain(service, pool, mainThread);
      TaskScope scope(mainThread);
      for (int i = 0; i < 5; ++i) scope.start(setValue(keychain, std::to_string(i)));
      mainThread.runPosted();
      EXPECT_TRUE(mainThread.waitUntil([&service] { return service.calls > 0; }));
    }
  }
  EXPECT_EQ(service.last, "4");
}

}  // namespace
}  // namespace tarnwick
