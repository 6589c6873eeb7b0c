#pragma once

#include <QElapsedTimer>
#include <QTimer>
#include <functional>
#include <memory>
#include <vector>

#include "core/async/published.h"

namespace tarnwick {

/// Calls a screen's `render` once in a later turn of the event loop, however many values changed in
/// between, and at most about 60 times a second while changes keep coming. Interface thread only.
class RenderScheduler {
 public:
  explicit RenderScheduler(std::function<void()> render);

  /// Every announcement of `changes` asks for a render. `changes` need not outlive this object.
  void observe(ChangeSignal& changes);

  /// Asks for a render in a later turn.
  void request();

 private:
  std::function<void()> render_;
  QTimer timer_;
  QElapsedTimer sinceLast_;
  std::vector<std::shared_ptr<void>> observations_;
};

}  // namespace tarnwick
