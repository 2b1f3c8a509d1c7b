#include "widgets/LogCursor.h"

#include <QStringList>
#include <QTextBoundaryFinder>
#include <cstdlib>

#include "widgets/LogView.h"

namespace {

bool isBefore(const LogCursor::Place& one, const LogCursor::Place& other) {
    return std::tie(one.line, one.column) < std::tie(other.line, other.column);
}

}  // namespace

LogCursor::Place LogCursor::first() const {
    return isBefore(m_anchor, m_caret) ? m_anchor : m_caret;
}

LogCursor::Place LogCursor::last() const {
    return isBefore(m_anchor, m_caret) ? m_caret : m_anchor;
}

LogCursor::Place LogCursor::endOf(int line) const {
    return {line, m_view->store().text(line).size()};
}

LogCursor::Range LogCursor::rangeIn(int line) const {
    const Place begin = first();
    const Place end = last();
    if (line < begin.line || line > end.line)
        return {0, 0};
    return {line == begin.line ? begin.column : 0, line == end.line ? end.column : endOf(line).column};
}

QString LogCursor::selectedText() const {
    if (!hasSelection())
        return {};
    QStringList lines;
    for (int line = first().line; line <= last().line; ++line) {
        const Range range = rangeIn(line);
        lines += m_view->store().text(line).mid(range.begin, range.end - range.begin);
    }
    return lines.join('\n');
}

void LogCursor::moveTo(const Place& place, bool extends) {
    m_caret = place;
    if (!extends)
        m_anchor = place;
}

void LogCursor::extend(Step step, int count) {
    if (m_view->store().lineCount() == 0)
        return;
    for (int i = 0; i < std::abs(count); ++i)
        m_caret = stepped(step, count > 0);
}

LogCursor::Place LogCursor::stepped(Step step, bool forward) const {
    const int lastLine = m_view->store().lineCount() - 1;
    if (step == Step::Document)
        return forward ? endOf(lastLine) : Place{0, 0};
    if (step == Step::LineEdge)
        return forward ? endOf(m_caret.line) : Place{m_caret.line, 0};
    if (step == Step::Row)
        return steppedRow(forward);
    if (forward && m_caret.column >= endOf(m_caret.line).column)
        return m_caret.line < lastLine ? Place{m_caret.line + 1, 0} : m_caret;
    if (!forward && m_caret.column == 0)
        return m_caret.line > 0 ? endOf(m_caret.line - 1) : m_caret;
    const auto layout = m_view->layoutOf(m_caret.line);
    const auto mode = step == Step::Word ? QTextLayout::SkipWords : QTextLayout::SkipCharacters;
    return {m_caret.line, forward ? layout->nextCursorPosition(m_caret.column, mode)
                                  : layout->previousCursorPosition(m_caret.column, mode)};
}

LogCursor::Place LogCursor::steppedRow(bool forward) const {
    auto layout = m_view->layoutOf(m_caret.line);
    const QTextLine row = layout->lineForTextPosition(m_caret.column);
    const qreal x = row.cursorToX(m_caret.column);
    const int next = row.lineNumber() + (forward ? 1 : -1);
    if (next >= 0 && next < layout->lineCount())
        return {m_caret.line, layout->lineAt(next).xToCursor(x)};
    const int line = m_caret.line + (forward ? 1 : -1);
    if (line < 0 || line >= m_view->store().lineCount())
        return m_caret;
    layout = m_view->layoutOf(line);
    return {line, layout->lineAt(forward ? 0 : layout->lineCount() - 1).xToCursor(x)};
}

void LogCursor::selectWord(const Place& place) {
    const QString text = m_view->store().text(place.line);
    QTextBoundaryFinder finder(QTextBoundaryFinder::Word, text);
    finder.setPosition(place.column);
    const int begin = finder.isAtBoundary() ? place.column : qMax(0, finder.toPreviousBoundary());
    finder.setPosition(place.column);
    const int end = finder.toNextBoundary();
    m_anchor = {place.line, begin};
    m_caret = {place.line, end < 0 ? text.size() : end};
}

void LogCursor::selectLine(int line) {
    m_anchor = {line, 0};
    m_caret = endOf(line);
}

void LogCursor::selectAll() {
    m_anchor = {0, 0};
    extend(Step::Document, 1);
}

void LogCursor::drop(int lines) {
    for (Place* place : {&m_anchor, &m_caret}) {
        place->line -= lines;
        if (place->line < 0)
            *place = {0, 0};
    }
}
