#pragma once

#include <QWidget>

#include "core/async/worker_queue.h"
#include "ui/common/dialog_service.h"
#include "ui/logs_window/log_view.h"
#include "ui/logs_window/logs_feed.h"

namespace tarnwick {

/// What the logs window works with. All of it outlives the window.
struct LogsWindowServices {
  Docker& docker;
  MainThread& mainThread;
  WorkerQueue& workers;  ///< where files are written
  DialogService& dialogs;
};

/// The last lines that the desktop's container has logged. Closing deletes the window, so that it
/// starts afresh.
class LogsWindow final : public QWidget {
 public:
  explicit LogsWindow(LogsWindowServices services);

 protected:
  bool event(QEvent* event) override;

 private:
  QWidget* makeToolbar();
  void render();
  void save();
  [[nodiscard]] QString text() const;

  LogsWindowServices services_;
  QWidget* toolbar_;
  LogView* view_;
  LogsFeed feed_;
};

}  // namespace tarnwick
