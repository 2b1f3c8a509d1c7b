#pragma once

#include <QAbstractScrollArea>
#include <QBasicTimer>
#include <QTextLayout>
#include <QVector>
#include <memory>
#include <vector>

#include "widgets/LogCursor.h"
#include "widgets/LogStore.h"

/// Shows the lines of a LogStore, wrapped, and lets the user select text by mouse and keyboard. Lays out only
/// the lines that are to be seen, so its cost does not depend on how many there are. Stays at the end of the
/// log until the user scrolls up. GUI thread.
class LogView : public QAbstractScrollArea {
    Q_OBJECT
public:
    /// A line at least part of which is to be seen.
    struct ShownLine {
        int line;
        qreal top;  ///< pixels in the viewport
        qreal height;
        std::shared_ptr<QTextLayout> layout;
    };

    /// See LogStore::append().
    struct NewLine {
        QString text;
        int level;
    };

    explicit LogView(QWidget* parent = nullptr, int maxLines = LogStore::MaxLines);

    /// Shown within 50 ms; kept only, while the view is hidden.
    void appendLine(const QString& text, int level) { appendLines({NewLine{text, level}}); }
    void appendLines(const QVector<NewLine>& lines, const QTime& time = QTime::currentTime());

    /// See LogStore::skip(). Shown with the next lines.
    void skipLines(int count) { m_store.skip(count); }

    const LogStore& store() const { return m_store; }
    const std::vector<ShownLine>& shownLines() const { return m_shown; }
    std::shared_ptr<QTextLayout> layoutOf(int line) const;

    /// The place nearest to a point of the viewport.
    LogCursor::Place placeAt(const QPoint& point) const;

    const LogCursor& cursor() const { return m_cursor; }
    void select(const LogCursor::Place& anchor, const LogCursor::Place& caret);

public Q_SLOTS:
    void selectAll();
    /// Drops all lines, and follows the end again.
    void clear();

Q_SIGNALS:
    /// Other lines are shown, or the same ones elsewhere.
    void shownLinesChanged();

protected:
    static constexpr int Margin = 4;  ///< pixels around the text

    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void timerEvent(QTimerEvent* event) override;

private:
    struct Place {
        int line = 0;
        qreal offset = 0;  ///< pixels of the line that are above the viewport
    };

    qreal heightOf(int line) const;
    int roomHeight() const { return viewport()->height() - 2 * Margin; }
    Place lastPlace() const;
    Place normalized(Place place) const;
    void moveTo(Place place);
    void scrollBy(qreal pixels) { moveTo({m_top.line, m_top.offset + pixels}); }
    void scrollToValue(int value);
    void arrange();
    void updateScrollBar(const Place& last);
    void forgetDropped(int lines);
    void selectTo(const QPoint& point);
    void showCaret();
    void publishSelection();

    LogStore m_store;
    LogCursor m_cursor;
    Place m_top;
    bool m_follows = true;
    bool m_isUpdatingScrollBar = false;
    std::vector<ShownLine> m_shown;
    QBasicTimer m_showTimer;
    QBasicTimer m_autoScroll;
    QBasicTimer m_tripleClick;  ///< runs as long as another click makes three
    QPoint m_mouse;
};
