#pragma once

#include <QPlainTextEdit>
#include <QString>

namespace tarnwick {

/// Shows the tail of a log, selectable. When the text has grown at its end and lost lines at its
/// beginning, only that is changed: the selection stays, and the lines in view stay in view.
class LogView final : public QPlainTextEdit {
 public:
  enum class Scroll { stay, toEnd };

  explicit LogView(QWidget* parent = nullptr);
  void showText(const QString& text, Scroll scroll);

 protected:
  bool event(QEvent* event) override;

 private:
  void keepCommonLines(qsizetype dropped, const QString& added);
  void scrollToEnd();

  QString shown_;
};

/// The number of leading characters of `before`, whole lines, after which `after` goes on with the
/// rest of `before`; all of them when the texts have nothing in common.
[[nodiscard]] qsizetype droppedPrefix(const QString& before, const QString& after);

}  // namespace tarnwick
