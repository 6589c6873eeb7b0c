#include "app/quit_hook.h"

#include "core/settings/settings_store.h"

namespace tarnwick {
namespace {

constexpr double limitSeconds = 60;

}  // namespace

void stopColimaIfWanted(const KeyValueStore& store, const ToolFinder& tools, const CLI& cli) {
  if (!store.boolean(SettingsStore::stopColimaOnQuitKey)) return;
  const auto colima = tools.find("colima");
  if (!colima) return;
  static_cast<void>(cli.runSync(*colima, {"stop"}, limitSeconds, {}));
}

}  // namespace tarnwick
