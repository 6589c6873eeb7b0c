#pragma once

#include "app/single_instance.h"
#include "app/wish.h"
#include "core/settings/app_paths.h"

namespace tarnwick {

/// A display is there to open windows on, as far as one can tell without trying.
[[nodiscard]] bool hasDisplay(int argc, char** argv);

/// The whole application from its first window to its end: makes the process's QApplication,
/// fulfils the wish that it was started for and those of later starts, and gives the exit status.
/// The process is to end soon after, without destructors of static objects, since worker threads
/// may be waiting for tools still.
[[nodiscard]] int runWithWindows(int& argc, char** argv, const AppPaths& paths, Wish wish,
                                 SingleInstance& instance);

}  // namespace tarnwick
