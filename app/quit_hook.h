#pragma once

#include "core/process/cli.h"
#include "core/process/tool_finder.h"
#include "core/settings/key_value_store.h"

namespace tarnwick {

/// When the user wants it so, stops Colima and waits for that: 60 seconds at most, and 3 more if
/// it ignores the request to end. Whatever goes wrong stays silent. Main thread.
void stopColimaIfWanted(const KeyValueStore& store, const ToolFinder& tools, const CLI& cli);

}  // namespace tarnwick
