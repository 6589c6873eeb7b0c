#include "core/async/sleep.h"

#include "core/async/arrival.h"

namespace tarnwick {

Task<void> sleepFor(MainThread& mainThread, Duration duration, CancellationToken token) {
  Arrival<bool> wakeUp;
  const auto state = wakeUp.state();
  state->value = true;
  mainThread.postAfter(duration, [state] { state->arrive(); });
  const auto registration =
      token.onCancel([state, &mainThread] { mainThread.post([state] { state->arrive(); }); });
  co_await wakeUp;
}

}  // namespace tarnwick
