#include "widgets/LogView.h"

#include <QApplication>
#include <QClipboard>
#include <QPaintEvent>
#include <QScrollBar>
#include <QtMath>
#include <algorithm>

#include "fenk/style/Theme.h"
#include "fenk/style/WidgetLook.h"
#include "widgets/LogTextInterface.h"

using Step = LogCursor::Step;

namespace {

constexpr qreal TabWidth = 80;
constexpr int ShowDelayMs = 50;
constexpr int AutoScrollMs = 50;
constexpr int WheelNotch = 120;  ///< eighths of a degree, times eight: one notch of the usual wheel

struct SelectionKey {
    QKeySequence::StandardKey key;
    Step step;
    int count;
};

constexpr SelectionKey SelectionKeys[] = {
    {QKeySequence::SelectNextChar, Step::Character, 1},
    {QKeySequence::SelectPreviousChar, Step::Character, -1},
    {QKeySequence::SelectNextWord, Step::Word, 1},
    {QKeySequence::SelectPreviousWord, Step::Word, -1},
    {QKeySequence::SelectNextLine, Step::Row, 1},
    {QKeySequence::SelectPreviousLine, Step::Row, -1},
    {QKeySequence::SelectStartOfLine, Step::LineEdge, -1},
    {QKeySequence::SelectEndOfLine, Step::LineEdge, 1},
    {QKeySequence::SelectStartOfDocument, Step::Document, -1},
    {QKeySequence::SelectEndOfDocument, Step::Document, 1},
};

}  // namespace

LogView::LogView(QWidget* parent, int maxLines)
    : QAbstractScrollArea(parent), m_store(maxLines), m_cursor(this) {
    LogTextInterface::install();
    Fenk::setTextAreaLook(this);
    setFocusPolicy(Qt::StrongFocus);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    viewport()->setCursor(Qt::IBeamCursor);
    connect(verticalScrollBar(), &QScrollBar::valueChanged, this, &LogView::scrollToValue);
}

std::shared_ptr<QTextLayout> LogView::layoutOf(int line) const {
    auto layout = std::make_shared<QTextLayout>(m_store.text(line), font(), viewport());
    QTextOption option;
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    option.setTabStopDistance(TabWidth);
    layout->setTextOption(option);
    layout->setCacheEnabled(true);
    layout->beginLayout();
    qreal height = 0;
    for (QTextLine row = layout->createLine(); row.isValid(); row = layout->createLine()) {
        row.setLineWidth(qMax(1, viewport()->width() - 2 * Margin));
        row.setPosition({0, height});
        height += qCeil(row.height());
    }
    layout->endLayout();
    return layout;
}

qreal LogView::heightOf(int line) const {
    return layoutOf(line)->boundingRect().height();
}

/// Where the last line stands at the bottom; the first place, if all lines fit.
LogView::Place LogView::lastPlace() const {
    qreal below = 0;
    for (int line = m_store.lineCount() - 1; line >= 0; --line) {
        below += heightOf(line);
        if (below >= roomHeight())
            return {line, below - roomHeight()};
    }
    return {};
}

/// The same place with an offset within its line.
LogView::Place LogView::normalized(Place place) const {
    const int count = m_store.lineCount();
    place.line = qBound(0, place.line, qMax(0, count - 1));
    while (place.offset < 0 && place.line > 0)
        place.offset += heightOf(--place.line);
    place.offset = qMax(0.0, place.offset);
    while (place.offset > 0 && place.line < count - 1) {
        const qreal height = heightOf(place.line);
        if (place.offset < height)
            break;
        place.offset -= height;
        ++place.line;
    }
    return place;
}

void LogView::moveTo(Place place) {
    const Place last = lastPlace();
    m_top = normalized(place);
    m_follows = std::tie(m_top.line, m_top.offset) >= std::tie(last.line, last.offset);
    arrange();
}

void LogView::scrollToValue(int value) {
    if (m_isUpdatingScrollBar)
        return;
    m_follows = value >= verticalScrollBar()->maximum();
    m_top = {value, 0};
    arrange();
}

void LogView::appendLines(const QVector<NewLine>& lines, const QTime& time) {
    const qint64 dropped = m_store.droppedLines();
    for (const NewLine& line : lines)
        m_store.append(line.text, line.level, time);
    if (m_store.droppedLines() > dropped)
        forgetDropped(int(m_store.droppedLines() - dropped));
    if (isVisible() && !m_showTimer.isActive())
        m_showTimer.start(ShowDelayMs, this);
}

/// The lines that are left have new numbers.
void LogView::forgetDropped(int lines) {
    m_cursor.drop(lines);
    m_top.line -= lines;
    if (m_top.line < 0)
        m_top = {};
    for (ShownLine& shown : m_shown)
        shown.line -= lines;
    m_shown.erase(
        std::remove_if(m_shown.begin(), m_shown.end(), [](const ShownLine& shown) { return shown.line < 0; }),
        m_shown.end());
}

/// Lays out what is to be seen from m_top, or from where the last line is at the bottom.
void LogView::arrange() {
    const Place last = lastPlace();
    if (m_follows || std::tie(m_top.line, m_top.offset) > std::tie(last.line, last.offset))
        m_top = last;
    m_shown.clear();
    qreal top = Margin - m_top.offset;
    for (int line = m_top.line; line < m_store.lineCount() && top < viewport()->height(); ++line) {
        const auto layout = layoutOf(line);
        m_shown.push_back({line, top, layout->boundingRect().height(), layout});
        top += m_shown.back().height;
    }
    viewport()->update();
    updateScrollBar(last);
    Q_EMIT shownLinesChanged();
}

/// The bar counts lines. Its last value stands for the end, wherever in a line that is.
void LogView::updateScrollBar(const Place& last) {
    QScrollBar* bar = verticalScrollBar();
    const int maximum = last.line + (last.offset > 0 ? 1 : 0);
    const bool isAtEnd = std::tie(m_top.line, m_top.offset) >= std::tie(last.line, last.offset);
    const int value = isAtEnd ? maximum : m_top.line;
    const int width = viewport()->width();
    m_isUpdatingScrollBar = true;
    bar->setPageStep(qMax(1, int(m_shown.size()) - 1));
    bar->setRange(0, maximum);
    if (viewport()->width() == width)  // otherwise the bar came or went, and all was arranged anew
        bar->setValue(value);
    m_isUpdatingScrollBar = false;
}

void LogView::selectAll() {
    m_cursor.selectAll();
    viewport()->update();
}

void LogView::clear() {
    m_store = LogStore(m_store.maxLines());
    m_cursor.moveTo({0, 0}, false);
    m_top = {};
    m_follows = true;
    arrange();
}

void LogView::select(const LogCursor::Place& anchor, const LogCursor::Place& caret) {
    m_cursor.moveTo(anchor, false);
    m_cursor.moveTo(caret, true);
    viewport()->update();
}

LogCursor::Place LogView::placeAt(const QPoint& point) const {
    if (m_shown.empty())
        return {0, 0};
    const ShownLine* hit = &m_shown.front();
    for (const ShownLine& shown : m_shown) {
        if (shown.top <= point.y())
            hit = &shown;
    }
    QTextLine row = hit->layout->lineAt(0);
    for (int i = 1; i < hit->layout->lineCount() && hit->top + hit->layout->lineAt(i).y() <= point.y(); ++i)
        row = hit->layout->lineAt(i);
    return {hit->line, row.xToCursor(point.x() - Margin)};
}

void LogView::selectTo(const QPoint& point) {
    m_cursor.moveTo(placeAt(point), true);
    viewport()->update();
}

void LogView::showCaret() {
    const LogCursor::Place caret = m_cursor.caret();
    const auto layout = layoutOf(caret.line);
    const QTextLine row = layout->lineForTextPosition(caret.column);
    const qreal bottom = row.y() + row.height();
    for (const ShownLine& shown : m_shown) {
        if (shown.line == caret.line && shown.top + row.y() >= 0 &&
            shown.top + bottom <= viewport()->height()) {
            viewport()->update();
            return;
        }
    }
    const bool isAbove = caret.line < m_top.line || (caret.line == m_top.line && row.y() < m_top.offset);
    moveTo({caret.line, isAbove ? row.y() : bottom - roomHeight()});
}

/// On X11 the middle button pastes what is selected.
void LogView::publishSelection() {
    QClipboard* clipboard = QGuiApplication::clipboard();
    if (clipboard->supportsSelection() && m_cursor.hasSelection())
        clipboard->setText(m_cursor.selectedText(), QClipboard::Selection);
}

void LogView::paintEvent(QPaintEvent* event) {
    QPainter painter(viewport());
    const QPalette::ColorGroup group = hasFocus() ? QPalette::Active : QPalette::Inactive;
    QTextLayout::FormatRange selection;
    selection.format.setBackground(palette().brush(group, QPalette::Highlight));
    selection.format.setForeground(palette().brush(group, QPalette::HighlightedText));
    for (const ShownLine& shown : m_shown) {
        const LogCursor::Range range = m_cursor.rangeIn(shown.line);
        selection.start = range.begin;
        selection.length = range.end - range.begin;
        painter.setPen(m_store.isError(shown.line) ? Fenk::Theme::instance()->color(Fenk::Theme::Danger)
                                                   : palette().color(QPalette::Text));
        shown.layout->draw(&painter, QPointF(Margin, shown.top),
                           selection.length > 0 ? QVector<QTextLayout::FormatRange>{selection}
                                                : QVector<QTextLayout::FormatRange>(),
                           event->rect());
    }
}

void LogView::resizeEvent(QResizeEvent* event) {
    QAbstractScrollArea::resizeEvent(event);
    arrange();
}

void LogView::changeEvent(QEvent* event) {
    QAbstractScrollArea::changeEvent(event);
    if (event->type() == QEvent::FontChange)
        arrange();
}

void LogView::showEvent(QShowEvent* event) {
    QAbstractScrollArea::showEvent(event);
    arrange();
}

void LogView::wheelEvent(QWheelEvent* event) {
    const qreal notches = qreal(event->angleDelta().y()) / WheelNotch;
    scrollBy(-notches * QApplication::wheelScrollLines() * fontMetrics().lineSpacing());
}

void LogView::keyPressEvent(QKeyEvent* event) {
    const int row = fontMetrics().lineSpacing();
    const int page = qMax(row, roomHeight() - row);
    for (const SelectionKey& known : SelectionKeys) {
        if (!event->matches(known.key))
            continue;
        m_cursor.extend(known.step, known.count);
        if (m_store.lineCount() > 0)
            showCaret();
        publishSelection();
        return;
    }
    if (event->matches(QKeySequence::SelectNextPage) || event->matches(QKeySequence::SelectPreviousPage)) {
        m_cursor.extend(Step::Row, event->matches(QKeySequence::SelectNextPage) ? page / row : -page / row);
        if (m_store.lineCount() > 0)
            showCaret();
        publishSelection();
    } else if (event->matches(QKeySequence::SelectAll)) {
        selectAll();
    } else if (event->matches(QKeySequence::MoveToNextLine)) {
        scrollBy(row);
    } else if (event->matches(QKeySequence::MoveToPreviousLine)) {
        scrollBy(-row);
    } else if (event->key() == Qt::Key_Space) {
        scrollBy(event->modifiers() & Qt::ShiftModifier ? -page : page);
    } else if (event->matches(QKeySequence::MoveToNextPage)) {
        scrollBy(page);
    } else if (event->matches(QKeySequence::MoveToPreviousPage)) {
        scrollBy(-page);
    } else if (event->matches(QKeySequence::MoveToStartOfDocument)) {
        moveTo({});
    } else if (event->matches(QKeySequence::MoveToEndOfDocument)) {
        moveTo(lastPlace());
    } else {
        event->ignore();
    }
}

void LogView::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton)
        return;
    const LogCursor::Place place = placeAt(event->pos());
    if (m_store.lineCount() == 0)
        return;
    if (m_tripleClick.isActive())
        m_cursor.selectLine(place.line);
    else
        m_cursor.moveTo(place, event->modifiers() & Qt::ShiftModifier);
    viewport()->update();
}

void LogView::mouseMoveEvent(QMouseEvent* event) {
    if (!(event->buttons() & Qt::LeftButton) || m_store.lineCount() == 0)
        return;
    m_tripleClick.stop();
    m_mouse = event->pos();
    selectTo(m_mouse);
    const bool isInside = m_mouse.y() >= 0 && m_mouse.y() < viewport()->height();
    if (isInside)
        m_autoScroll.stop();
    else if (!m_autoScroll.isActive())
        m_autoScroll.start(AutoScrollMs, this);
}

void LogView::mouseReleaseEvent(QMouseEvent*) {
    m_autoScroll.stop();
    publishSelection();
}

void LogView::mouseDoubleClickEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton || m_store.lineCount() == 0)
        return;
    m_cursor.selectWord(placeAt(event->pos()));
    m_tripleClick.start(QApplication::doubleClickInterval(), this);
    viewport()->update();
}

void LogView::timerEvent(QTimerEvent* event) {
    if (event->timerId() == m_showTimer.timerId()) {
        m_showTimer.stop();
        if (isVisible())
            arrange();
    } else if (event->timerId() == m_tripleClick.timerId()) {
        m_tripleClick.stop();
    } else if (event->timerId() == m_autoScroll.timerId()) {
        const int outside = m_mouse.y() < 0 ? m_mouse.y() : m_mouse.y() - viewport()->height();
        scrollBy(outside);
        selectTo(m_mouse);
    } else {
        QAbstractScrollArea::timerEvent(event);
    }
}
