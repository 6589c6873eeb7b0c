#include "ui/logs_window/log_view.h"

#include <QScrollBar>
#include <QTextBlock>
#include <QTextCursor>
#include <algorithm>

#include "ui/common/theme.h"

namespace tarnwick {
namespace {

constexpr qreal padding = 8;

}  // namespace

qsizetype droppedPrefix(const QString& before, const QString& after) {
  const QStringView rest(before);
  for (qsizetype start = 0; start < before.size();) {
    if (QStringView(after).startsWith(rest.sliced(start))) return start;
    const qsizetype lineEnd = before.indexOf(QLatin1Char('\n'), start);
    start = lineEnd < 0 ? before.size() : lineEnd + 1;
  }
  return before.size();
}

LogView::LogView(QWidget* parent) : QPlainTextEdit(parent) {
  setReadOnly(true);
  setUndoRedoEnabled(false);
  setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  setWordWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
  setTabChangesFocus(true);
  setFrameShape(QFrame::NoFrame);
  setFont(fontFor(FontRole::mono));
  document()->setDocumentMargin(padding);
}

bool LogView::event(QEvent* event) {
  const bool handled = QPlainTextEdit::event(event);
  if (changesTheme(*event) && font() != fontFor(FontRole::mono)) setFont(fontFor(FontRole::mono));
  return handled;
}

void LogView::showText(const QString& text, Scroll scroll) {
  // The document counts a line end as one character, so ours have to be one as well.
  QString lines = text;
  lines.replace(QLatin1String("\r\n"), QLatin1String("\n"));
  lines.replace(QLatin1Char('\r'), QLatin1Char('\n'));
  if (lines != shown_) {
    const qsizetype dropped = droppedPrefix(shown_, lines);
    const bool isCounted = document()->characterCount() - 1 == shown_.size();
    if (isCounted && dropped < shown_.size()) {
      keepCommonLines(dropped, lines.sliced(shown_.size() - dropped));
    } else {
      setPlainText(lines);
    }
    shown_ = lines;
  }
  if (scroll == Scroll::toEnd) scrollToEnd();
}

void LogView::keepCommonLines(qsizetype dropped, const QString& added) {
  const QTextCursor topLine(firstVisibleBlock());  // moves along with its text
  const int intoBlock = verticalScrollBar()->value() - firstVisibleBlock().firstLineNumber();
  const int anchor = textCursor().anchor() - static_cast<int>(dropped);
  const int position = textCursor().position() - static_cast<int>(dropped);

  QTextCursor edit(document());
  edit.beginEditBlock();
  edit.setPosition(static_cast<int>(dropped), QTextCursor::KeepAnchor);
  edit.removeSelectedText();
  edit.movePosition(QTextCursor::End);
  edit.insertText(added);
  edit.endEditBlock();

  // A selection that ended at the end would have grown with it.
  QTextCursor selection(document());
  selection.setPosition(std::max(anchor, 0));
  selection.setPosition(std::max(position, 0), QTextCursor::KeepAnchor);
  setTextCursor(selection);
  verticalScrollBar()->setValue(topLine.block().firstLineNumber() + intoBlock);
}

void LogView::scrollToEnd() {
  verticalScrollBar()->setValue(verticalScrollBar()->maximum());
}

}  // namespace tarnwick
