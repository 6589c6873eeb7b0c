#include "ui/home/log_details.h"

#include <QScrollBar>
#include <QTextCursor>
#include <utility>

#include "ui/common/theme.h"

namespace tarnwick {
namespace {

constexpr int minimumMilliseconds = 100;

QString toText(std::string_view bytes) {
  return QString::fromUtf8(bytes.data(), static_cast<qsizetype>(bytes.size()));
}

}  // namespace

LogDetails::LogDetails(std::function<const LogText&()> log, QWidget* parent)
    : QPlainTextEdit(parent), log_(std::move(log)) {
  setReadOnly(true);
  setUndoRedoEnabled(false);
  setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  setTabChangesFocus(true);
  setAccessibleName(QStringLiteral("Details"));
  verticalScrollBar()->setAccessibleName(QStringLiteral("Scroll the details"));
  horizontalScrollBar()->setAccessibleName(QStringLiteral("Scroll the details sideways"));
  setFont(fontFor(FontRole::mono));
  timer_.setSingleShot(true);
  timer_.setInterval(minimumMilliseconds);
  QObject::connect(&timer_, &QTimer::timeout, this, [this] {
    if (isVisible()) catchUp();
  });
}

void LogDetails::follow() {
  if (isVisible() && !timer_.isActive()) timer_.start();
}

bool LogDetails::event(QEvent* event) {
  const bool handled = QPlainTextEdit::event(event);
  if (changesTheme(*event) && font() != fontFor(FontRole::mono)) setFont(fontFor(FontRole::mono));
  return handled;
}

void LogDetails::showEvent(QShowEvent* event) {
  QPlainTextEdit::showEvent(event);
  catchUp();
}

void LogDetails::catchUp() {
  const LogText& log = log_();
  const std::uint64_t from = log.appendedBytes() - log.text().size();
  // A new log counts from zero again; a cut one has lost text that is still shown.
  const bool goesOn = !placeholder_ && from == shownFrom_ && log.appendedBytes() >= shownTo_;
  if (!goesOn) return replaceAll(log);
  const std::size_t added = static_cast<std::size_t>(log.appendedBytes() - shownTo_);
  if (added == 0) return;
  const bool atEnd = verticalScrollBar()->value() == verticalScrollBar()->maximum();
  // Through a cursor of its own, so that what the user has selected stays selected.
  QTextCursor end(document());
  end.movePosition(QTextCursor::End);
  end.insertText(toText(log.text().substr(log.text().size() - added)));
  shownTo_ = log.appendedBytes();
  if (atEnd) verticalScrollBar()->setValue(verticalScrollBar()->maximum());
}

void LogDetails::replaceAll(const LogText& log) {
  placeholder_ = log.empty();
  setPlainText(placeholder_ ? QStringLiteral("(no output)") : toText(log.text()));
  shownTo_ = log.appendedBytes();
  shownFrom_ = shownTo_ - log.text().size();
}

}  // namespace tarnwick
