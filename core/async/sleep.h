#pragma once

#include "core/async/cancellation.h"
#include "core/async/main_thread.h"
#include "core/async/task.h"

namespace tarnwick {

/// Suspends the awaiting task for `duration`. Ends early, without an error, when `token` is
/// cancelled; at once (in a later turn) when it already is. Main thread only.
Task<void> sleepFor(MainThread& mainThread, Duration duration, CancellationToken token);

}  // namespace tarnwick
