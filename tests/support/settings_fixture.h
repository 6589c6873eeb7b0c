#pragma once

#include <memory>

#include "core/settings/settings_store.h"
#include "tests/support/counting_random_source.h"
#include "tests/support/memory_key_value_store.h"
#include "tests/support/memory_login_item.h"
#include "tests/support/memory_secret_service.h"
#include "tests/support/virtual_main_thread.h"
#include "tests/support/virtual_worker_queue.h"

namespace tarnwick {

/// A settings store on services in memory. `start` constructs it, as a program's start does.
struct SettingsFixture {
  void start() {
    settings = std::make_unique<SettingsStore>(store, keychain, loginItem, random, mainThread);
  }
  void startAndLoad() {
    start();
    mainThread.advance(workers.delay);
  }

  VirtualMainThread mainThread;
  VirtualWorkerQueue workers{mainThread};
  MemoryKeyValueStore store;
  MemorySecretService secrets;
  Keychain keychain{secrets, workers, mainThread};
  MemoryLoginItem loginItem;
  CountingRandomSource random;
  std::unique_ptr<SettingsStore> settings;
};

}  // namespace tarnwick
