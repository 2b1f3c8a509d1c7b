#include "widgets/LogTextInterface.h"

#include "widgets/LogView.h"

namespace {

QAccessibleInterface* makeInterface(const QString&, QObject* object) {
    auto* view = qobject_cast<LogView*>(object);
    return view ? new LogTextInterface(view) : nullptr;
}

}  // namespace

LogTextInterface::LogTextInterface(LogView* view) : QAccessibleWidget(view, QAccessible::EditableText) {}

void LogTextInterface::install() {
    static const bool isInstalled = [] {
        QAccessible::installFactory(makeInterface);
        return true;
    }();
    Q_UNUSED(isInstalled)
}

LogView* LogTextInterface::view() const {
    return static_cast<LogView*>(widget());
}

void* LogTextInterface::interface_cast(QAccessible::InterfaceType type) {
    if (type == QAccessible::TextInterface)
        return static_cast<QAccessibleTextInterface*>(this);
    return QAccessibleWidget::interface_cast(type);
}

QAccessible::State LogTextInterface::state() const {
    QAccessible::State state = QAccessibleWidget::state();
    state.readOnly = true;
    state.multiLine = true;
    state.selectableText = true;
    return state;
}

QString LogTextInterface::wholeText() const {
    QStringList lines;
    for (const LogView::ShownLine& shown : view()->shownLines())
        lines += shown.layout->text();
    return lines.join('\n');
}

QString LogTextInterface::text(QAccessible::Text type) const {
    return type == QAccessible::Value ? wholeText() : QAccessibleWidget::text(type);
}

/// Places outside what is shown are at its begin or end.
int LogTextInterface::offsetOf(const LogCursor::Place& place) const {
    int offset = 0;
    for (const LogView::ShownLine& shown : view()->shownLines()) {
        if (place.line <= shown.line)
            return offset + (place.line == shown.line ? place.column : 0);
        offset += shown.layout->text().size() + 1;
    }
    return qMax(0, offset - 1);
}

LogCursor::Place LogTextInterface::placeOf(int offset) const {
    LogCursor::Place place{0, 0};
    for (const LogView::ShownLine& shown : view()->shownLines()) {
        const int size = shown.layout->text().size();
        place = {shown.line, qBound(0, offset, size)};
        if (offset <= size)
            break;
        offset -= size + 1;
    }
    return place;
}

QString LogTextInterface::text(int begin, int end) const {
    return wholeText().mid(begin, end < 0 ? -1 : end - begin);
}

int LogTextInterface::characterCount() const {
    return wholeText().size();
}

QRect LogTextInterface::characterRect(int offset) const {
    const LogCursor::Place place = placeOf(offset);
    for (const LogView::ShownLine& shown : view()->shownLines()) {
        if (shown.line != place.line)
            continue;
        const QTextLine row = shown.layout->lineForTextPosition(place.column);
        const QPointF corner(row.cursorToX(place.column), shown.top + row.y());
        const QSizeF size(row.cursorToX(place.column + 1) - corner.x(), row.height());
        return {view()->viewport()->mapToGlobal(corner.toPoint()), size.toSize()};
    }
    return {};
}

int LogTextInterface::offsetAtPoint(const QPoint& point) const {
    return offsetOf(view()->placeAt(view()->viewport()->mapFromGlobal(point)));
}

int LogTextInterface::cursorPosition() const {
    return offsetOf(view()->cursor().caret());
}

void LogTextInterface::setCursorPosition(int offset) {
    setSelection(0, offset, offset);
}

int LogTextInterface::selectionCount() const {
    return view()->cursor().hasSelection() ? 1 : 0;
}

void LogTextInterface::selection(int, int* begin, int* end) const {
    *begin = offsetOf(view()->cursor().first());
    *end = offsetOf(view()->cursor().last());
}

void LogTextInterface::addSelection(int begin, int end) {
    setSelection(0, begin, end);
}

void LogTextInterface::setSelection(int, int begin, int end) {
    view()->select(placeOf(begin), placeOf(end));
}

void LogTextInterface::removeSelection(int) {
    setCursorPosition(cursorPosition());
}

/// All of the text is to be seen.
void LogTextInterface::scrollToSubstring(int, int) {}

QString LogTextInterface::attributes(int, int* begin, int* end) const {
    *begin = 0;
    *end = characterCount();
    return {};
}
