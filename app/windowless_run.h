#pragma once

#include "app/wish.h"
#include "core/settings/app_paths.h"

namespace tarnwick {

/// Fulfils a wish that needs no window where no other process could: Wish::stop and the two for the
/// status. Makes the process's QCoreApplication; the process is to end soon after, without
/// destructors of static objects, since worker threads may be waiting for tools still.
[[nodiscard]] Answer runWithoutWindows(int& argc, char** argv, const AppPaths& paths, Wish wish);

}  // namespace tarnwick
