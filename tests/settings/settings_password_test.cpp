#include <gmock/gmock.h>

#include "tests/support/settings_fixture.h"

namespace tarnwick {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* firstPassword = "000102030405060708090a0b";
constexpr const char* secondPassword = "0c0d0e0f1011121314151617";

Task<void> noteWhenLoaded(SettingsStore& settings, MainThread& mainThread, TimePoint& when) {
  co_await settings.passwordLoaded();
  when = mainThread.now();
}

class SettingsPasswordTest : public testing::Test, protected SettingsFixture {
 protected:
  /// Starts with a keychain that takes 3 s for its answer.
  void startSlowly() {
    workers.delay = 3s;
    start();
    mainThread.runPosted();
  }
  [[nodiscard]] std::vector<std::string> kept() {
    return secrets.items(SettingsStore::passwordAccount);
  }
  [[nodiscard]] PasswordStorage storage() const { return settings->passwordStorage.get(); }
  [[nodiscard]] const std::string& password() const { return settings->password.get(); }
};

TEST_F(SettingsPasswordTest, IsPublishedWhenTheKeychainHasAnswered) {
  secrets.put(SettingsStore::passwordAccount, "kept before");
  store.values["requirePassword"] = true;
  startSlowly();
  EXPECT_EQ(password(), "");
  EXPECT_EQ(storage(), PasswordStorage::loading);
  EXPECT_EQ(settings->activePassword(), std::nullopt);

  TaskScope tasks(mainThread);
  TimePoint loaded;
  tasks.start(noteWhenLoaded(*settings, mainThread, loaded));
  mainThread.advance(10s);
  EXPECT_EQ(loaded, TimePoint() + 3s);
  EXPECT_EQ(storage(), PasswordStorage::keychain);
  EXPECT_EQ(settings->activePassword(), "kept before");
  tasks.start(noteWhenLoaded(*settings, mainThread, loaded));
  mainThread.runPosted();
  EXPECT_EQ(loaded, TimePoint() + 10s) << "once loaded nobody waits";
  settings->setRequirePassword(false);
  EXPECT_EQ(settings->activePassword(), std::nullopt);
}

TEST_F(SettingsPasswordTest, AStartMakesNoPasswordEvenIfOneIsRequired) {
  store.values["requirePassword"] = true;
  startAndLoad();
  EXPECT_EQ(settings->activePassword(), std::nullopt);
  EXPECT_THAT(secrets.calls(), ElementsAre("find"));
  settings->setRequirePassword(true);
  EXPECT_EQ(settings->activePassword(), firstPassword);
}

TEST_F(SettingsPasswordTest, TurningItOnMakesOneOnlyWhenThereIsNone) {
  startAndLoad();
  settings->setRequirePassword(true);
  EXPECT_EQ(settings->activePassword(), firstPassword) << "at once";
  mainThread.advance(1s);
  EXPECT_THAT(kept(), ElementsAre(firstPassword));
  settings->setRequirePassword(false);
  settings->setRequirePassword(true);
  mainThread.advance(1s);
  EXPECT_EQ(password(), firstPassword);
  EXPECT_THAT(secrets.calls(), ElementsAre("find", "remove", "add"));
  EXPECT_EQ(store.values["requirePassword"], MemoryKeyValueStore::Value(true));
}

TEST_F(SettingsPasswordTest, TurningItOnBeforeTheAnswerKeepsWhatIsThere) {
  secrets.put(SettingsStore::passwordAccount, "kept before");
  startSlowly();
  settings->setRequirePassword(true);
  EXPECT_EQ(password(), "");
  mainThread.advance(10s);
  EXPECT_EQ(settings->activePassword(), "kept before");
  EXPECT_THAT(kept(), ElementsAre("kept before"));
}

TEST_F(SettingsPasswordTest, TurningItOnBeforeTheAnswerMakesOneWhenNoneIsThere) {
  startSlowly();
  settings->setRequirePassword(true);
  TaskScope tasks(mainThread);
  TimePoint loaded;
  tasks.start(noteWhenLoaded(*settings, mainThread, loaded));
  mainThread.advance(3s);
  EXPECT_EQ(settings->activePassword(), firstPassword);
  EXPECT_EQ(loaded, TimePoint() + 3s);
  mainThread.advance(3s);
  EXPECT_THAT(kept(), ElementsAre(firstPassword));
}

TEST_F(SettingsPasswordTest, TurningItOnAndOffBeforeTheAnswerMakesNone) {
  startSlowly();
  settings->setRequirePassword(true);
  settings->setRequirePassword(false);
  mainThread.advance(10s);
  EXPECT_EQ(password(), "");
  EXPECT_THAT(kept(), IsEmpty());
}

TEST_F(SettingsPasswordTest, ALockedStoreIsNeverWrittenOverByTheSwitch) {
  for (const SecretStatus refusal : {SecretStatus::locked, SecretStatus::unavailable}) {
    secrets.put(SettingsStore::passwordAccount, "behind the lock");
    secrets.refuse(refusal);
    startSlowly();
    settings->setRequirePassword(true);
    mainThread.advance(10s);
    EXPECT_EQ(password().size(), 24U);
    EXPECT_EQ(storage(), PasswordStorage::sessionOnly);
    secrets.unlock();
    EXPECT_THAT(kept(), ElementsAre("behind the lock"));
  }
  EXPECT_THAT(secrets.calls(), ElementsAre("find", "find")) << "and no attempt was made";
}

TEST_F(SettingsPasswordTest, AStoreThatWasUnlockedSinceTheStartIsAskedAgain) {
  secrets.put(SettingsStore::passwordAccount, "behind the lock");
  secrets.refuse(SecretStatus::locked);
  startAndLoad();
  EXPECT_EQ(storage(), PasswordStorage::sessionOnly);
  secrets.unlock();
  settings->setRequirePassword(true);
  EXPECT_EQ(storage(), PasswordStorage::loading);
  mainThread.advance(1s);
  EXPECT_EQ(settings->activePassword(), "behind the lock");
  EXPECT_EQ(storage(), PasswordStorage::keychain);
}

TEST_F(SettingsPasswordTest, ANewPasswordWinsOverALateAnswerAndIsStored) {
  secrets.put(SettingsStore::passwordAccount, "kept before");
  startSlowly();
  settings->regeneratePassword();
  EXPECT_EQ(password(), firstPassword);
  TaskScope tasks(mainThread);
  TimePoint loaded;
  tasks.start(noteWhenLoaded(*settings, mainThread, loaded));
  mainThread.runPosted();
  EXPECT_EQ(loaded, TimePoint()) << "nothing is left to wait for";
  mainThread.advance(10s);
  EXPECT_EQ(password(), firstPassword);
  EXPECT_THAT(kept(), ElementsAre(firstPassword));
  EXPECT_EQ(storage(), PasswordStorage::keychain);
}

TEST_F(SettingsPasswordTest, APasswordThatCannotBeStoredLivesForTheSession) {
  startAndLoad();
  secrets.refuse(SecretStatus::unavailable);
  settings->regeneratePassword();
  mainThread.advance(1s);
  EXPECT_EQ(password(), firstPassword);
  EXPECT_EQ(storage(), PasswordStorage::sessionOnly);
  secrets.unlock();
  settings->regeneratePassword();
  mainThread.advance(1s);
  EXPECT_THAT(kept(), ElementsAre(secondPassword));
  EXPECT_EQ(storage(), PasswordStorage::keychain);
}

TEST_F(SettingsPasswordTest, AStoreThatComesUpLaterIsUsed) {
  struct Case {
    const char* stored;
    bool userWantedAnother;
    bool storedOneWins;
  };
  for (const Case& one : {Case{nullptr, false, false}, Case{"behind the lock", false, true},
                          Case{"behind the lock", true, false}}) {
    secrets.erase(SettingsStore::passwordAccount);
    if (one.stored != nullptr) secrets.put(SettingsStore::passwordAccount, one.stored);
    secrets.refuse(SecretStatus::locked);
    startAndLoad();
    if (one.userWantedAnother) settings->regeneratePassword();
    settings->setRequirePassword(true);
    mainThread.advance(1s);
    const std::string ofSession = password();
    EXPECT_EQ(ofSession.size(), 24U);
    settings->retryKeychain();
    mainThread.advance(1s);
    EXPECT_EQ(password(), ofSession);
    EXPECT_EQ(storage(), PasswordStorage::sessionOnly) << "still locked";

    secrets.unlock();
    settings->retryKeychain();
    settings->retryKeychain();
    mainThread.advance(1s);
    const std::string expected = one.storedOneWins ? one.stored : ofSession;
    EXPECT_EQ(settings->activePassword(), expected);
    EXPECT_THAT(kept(), ElementsAre(expected));
    EXPECT_EQ(storage(), PasswordStorage::keychain);
    const std::size_t calls = secrets.calls().size();
    settings->retryKeychain();
    mainThread.advance(1s);
    EXPECT_EQ(secrets.calls().size(), calls) << "a store that is of use is not asked again";
  }
}

TEST_F(SettingsPasswordTest, AnotherAttemptDoesNotHideThatTheStoreIsOfNoUse) {
  secrets.refuse(SecretStatus::unavailable);
  startAndLoad();
  workers.delay = 3s;
  settings->retryKeychain();
  mainThread.advance(1s);
  EXPECT_EQ(storage(), PasswordStorage::sessionOnly);
  secrets.unlock();
  secrets.put(SettingsStore::passwordAccount, "kept before");
  TaskScope tasks(mainThread);
  TimePoint loaded;
  tasks.start(noteWhenLoaded(*settings, mainThread, loaded));
  mainThread.advance(5s);
  EXPECT_EQ(loaded, TimePoint() + 3s) << "a launch waits for the answer";
  EXPECT_EQ(password(), "kept before");
}

TEST_F(SettingsPasswordTest, NeverReachesTheKeyValueStore) {
  startAndLoad();
  settings->setRequirePassword(true);
  settings->regeneratePassword();
  settings->password = "assigned";
  mainThread.advance(1s);
  EXPECT_THAT(store.writes, ElementsAre("requirePassword"));
  EXPECT_THAT(kept(), ElementsAre(secondPassword)) << "assigning only publishes";
}

TEST_F(SettingsPasswordTest, TheProgramMayEndBeforeTheKeychainAnswers) {
  startSlowly();
  settings->regeneratePassword();
  mainThread.runPosted();
  settings.reset();
  mainThread.advance(10s);
  EXPECT_THAT(kept(), ElementsAre(firstPassword));
}

}  // namespace
}  // namespace tarnwick
