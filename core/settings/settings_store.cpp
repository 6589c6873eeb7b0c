#include "core/settings/settings_store.h"

#include <algorithm>
#include <filesystem>
#include <utility>

#include "core/async/arrival.h"
#include "core/settings/flavor.h"
#include "core/settings/password.h"

namespace tarnwick {

namespace {

void write(KeyValueStore& store, const std::string& key, const std::string& value) {
  store.setString(key, value);
}
void write(KeyValueStore& store, const std::string& key, std::int64_t value) {
  store.setInteger(key, value);
}
void write(KeyValueStore& store, const std::string& key, bool value) {
  store.setBoolean(key, value);
}
void write(KeyValueStore& store, const std::string& key, const std::vector<std::string>& value) {
  store.setStringList(key, value);
}

bool storeAnswers(SecretStatus status) {
  return status == SecretStatus::found || status == SecretStatus::missing;
}

}  // namespace

template <typename T>
Setting<T>::Setting(ChangeSignal& changes, KeyValueStore& store, std::string key, T initial)
    : store_(store), key_(std::move(key)), value_(changes, std::move(initial)) {}

template <typename T>
Setting<T>& Setting<T>::operator=(T value) {
  value_ = std::move(value);
  write(store_, key_, value_.get());
  return *this;
}

template class Setting<std::string>;
template class Setting<std::int64_t>;
template class Setting<bool>;
template class Setting<std::vector<std::string>>;

struct SettingsStore::Loading {
  bool pending = false;
  /// An answer is heeded only when it belongs to the current question.
  unsigned question = 0;
  /// A password was asked for while it was not known yet whether there is one.
  bool wanted = false;
  /// The user asked for the present password, so that it replaces whatever the keychain holds.
  bool replaces = false;
  std::vector<std::shared_ptr<Arrival<bool>::State>> waiting;
};

SettingsStore::SettingsStore(KeyValueStore& store, Keychain& keychain, LoginItem& loginItem,
                             RandomSource& random, MainThread& mainThread)
    : flavorID(changes_, store, "flavor", store.string("flavor").value_or("alpine-xfce")),
      cpu(changes_, store, "cpu", store.integer("cpu").value_or(2)),
      memory(changes_, store, "memory", store.integer("memory").value_or(4)),
      disk(changes_, store, "disk", store.integer("disk").value_or(20)),
      httpPort(changes_, store, "httpPort", store.integer("httpPort").value_or(3000)),
      httpsPort(changes_, store, "httpsPort", store.integer("httpsPort").value_or(3001)),
      stopColimaOnQuit(changes_, store, stopColimaOnQuitKey, store.boolean(stopColimaOnQuitKey)),
      shareFolder(changes_, store, "shareFolder", store.string("shareFolder").value_or("")),
      colimaAtLogin(changes_, store, "colimaAtLogin", store.boolean("colimaAtLogin")),
      launchedFlavors(changes_, store, "launchedFlavors",
                      store.stringList("launchedFlavors").value_or(std::vector<std::string>())),
      launchAtLogin(changes_, loginItem.isEnabled()),
      password(changes_, ""),
      passwordStorage(changes_, PasswordStorage::loading),
      store_(store),
      keychain_(keychain),
      loginItem_(loginItem),
      random_(random),
      mainThread_(mainThread),
      requirePassword_(changes_, store.boolean(requirePasswordKey)),
      loading_(std::make_unique<Loading>()),
      tasks_(mainThread) {
  askForPassword();
}

SettingsStore::~SettingsStore() = default;

bool SettingsStore::requirePassword() const {
  return requirePassword_.get();
}

void SettingsStore::setRequirePassword(bool on) {
  requirePassword_ = on;
  store_.setBoolean(requirePasswordKey, on);
  loading_->wanted = on && password.get().empty();
  if (!loading_->wanted || loading_->pending) return;
  if (passwordStorage.get() == PasswordStorage::keychain) {
    regeneratePassword();
  } else {
    // The keychain was of no use when last asked; it may have been unlocked since.
    passwordStorage = PasswordStorage::loading;
    askForPassword();
  }
}

std::optional<std::string> SettingsStore::validSharePath() const {
  const std::string& path = shareFolder.get();
  std::error_code ignored;
  if (path.empty() || !std::filesystem::is_directory(path, ignored)) return std::nullopt;
  return path;
}

std::optional<std::string> SettingsStore::activePassword() const {
  if (!requirePassword() || password.get().empty()) return std::nullopt;
  return password.get();
}

bool SettingsStore::hasLaunchedCurrent() const {
  const auto& launched = launchedFlavors.get();
  return std::ranges::find(launched, flavorID.get()) != launched.end();
}

void SettingsStore::markLaunched(const std::string& id) {
  auto launched = launchedFlavors.get();
  if (std::ranges::find(launched, id) != launched.end()) return;
  launched.push_back(id);
  launchedFlavors = std::move(launched);
}

void SettingsStore::forgetLaunched(const std::string& id) {
  auto launched = launchedFlavors.get();
  std::erase(launched, id);
  launchedFlavors = std::move(launched);
}

void SettingsStore::setLaunchAtLogin(bool on) {
  if (on) {
    loginItem_.registerItem();
  } else {
    loginItem_.unregisterItem();
  }
  launchAtLogin = loginItem_.isEnabled();
}

void SettingsStore::regeneratePassword() {
  password = makePassword(random_);
  loading_->replaces = true;
  endLoading();
  storePassword();
}

void SettingsStore::retryKeychain() {
  if (passwordStorage.get() != PasswordStorage::sessionOnly || loading_->pending) return;
  if (loading_->replaces) {
    storePassword();
  } else {
    askForPassword();
  }
}

void SettingsStore::storePassword() {
  tasks_.start(keepPassword(password.get()));
}

Task<void> SettingsStore::keepPassword(std::string newPassword) {
  std::string account = passwordAccount;
  const SecretStatus status = co_await keychain_.set(std::move(newPassword), std::move(account));
  passwordStorage =
      status == SecretStatus::found ? PasswordStorage::keychain : PasswordStorage::sessionOnly;
}

void SettingsStore::askForPassword() {
  loading_->pending = true;
  tasks_.start(loadPassword(++loading_->question));
}

Task<void> SettingsStore::loadPassword(unsigned question) {
  std::string account = passwordAccount;
  const SecretAnswer answer = co_await keychain_.get(std::move(account));
  if (question == loading_->question) settlePassword(answer);
}

void SettingsStore::settlePassword(const SecretAnswer& answer) {
  if (answer.status == SecretStatus::found) password = answer.bytes;
  const bool answers = storeAnswers(answer.status);
  passwordStorage = answers ? PasswordStorage::keychain : PasswordStorage::sessionOnly;
  const bool makeOne = loading_->wanted && password.get().empty();
  if (makeOne && answers) {
    regeneratePassword();
    return;
  }
  // Of a session in which the keychain has been of no use until now.
  if (answer.status == SecretStatus::missing && !password.get().empty()) storePassword();
  // A locked store may well hold a password: one that is made now must not replace it.
  if (makeOne) password = makePassword(random_);
  endLoading();
}

void SettingsStore::endLoading() {
  loading_->pending = false;
  loading_->wanted = false;
  ++loading_->question;
  if (loading_->waiting.empty()) return;
  mainThread_.post([waiting = std::exchange(loading_->waiting, {})] {
    for (const auto& task : waiting) task->arrive();
  });
}

Task<void> SettingsStore::passwordLoaded() {
  if (!loading_->pending) co_return;
  Arrival<bool> loaded;
  const auto state = loaded.state();
  state->value = true;
  loading_->waiting.push_back(state);
  co_await loaded;
}

}  // namespace tarnwick
