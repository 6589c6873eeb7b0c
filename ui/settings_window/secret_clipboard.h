#pragma once

#include <QClipboard>
#include <QString>
#include <chrono>

#include "core/async/main_thread.h"

namespace tarnwick {

/// Puts secrets on the clipboard: marked so that clipboard histories leave them out, and taken off
/// again after a while. What was begun goes on when the object is gone. Main thread only; the
/// clipboard and the main thread outlive the object and its waits.
class SecretClipboard {
 public:
  static constexpr std::chrono::seconds keptFor{60};

  SecretClipboard(QClipboard& clipboard, MainThread& mainThread)
      : clipboard_(clipboard), mainThread_(mainThread) {}

  /// Replaces the clipboard's content. After `keptFor` the clipboard is cleared if it still holds
  /// exactly this secret; copying again, by whichever object, starts the time anew.
  void copy(const QString& secret);

 private:
  QClipboard& clipboard_;
  MainThread& mainThread_;
};

}  // namespace tarnwick
