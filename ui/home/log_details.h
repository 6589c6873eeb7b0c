#pragma once

#include <QElapsedTimer>
#include <QPlainTextEdit>
#include <QTimer>
#include <cstdint>

#include "core/controller/log_text.h"

namespace tarnwick {

/// The whole log of a run, to read and to copy. While lines arrive it adds what is new, ten times a
/// second at most.
class LogDetails final : public QPlainTextEdit {
 public:
  /// `log` is read whenever the view catches up, and outlives it.
  explicit LogDetails(std::function<const LogText&()> log, QWidget* parent = nullptr);

  /// The log may have changed. Does nothing while the view is hidden; being shown catches up.
  void follow();

 protected:
  bool event(QEvent* event) override;
  void showEvent(QShowEvent* event) override;

 private:
  void catchUp();
  void replaceAll(const LogText& log);

  std::function<const LogText&()> log_;
  QTimer timer_;
  bool placeholder_ = true;      ///< the text is not the log's
  std::uint64_t shownFrom_ = 0;  ///< number of the first byte shown, counted as the log counts
  std::uint64_t shownTo_ = 0;    ///< number after the last byte shown
};

}  // namespace tarnwick
