#pragma once

#include <QHash>
#include <QPropertyAnimation>
#include <QScrollArea>

#include "programs/Program.h"

class LocalAppItemWidget;

/// A scrolling grid of program tiles. Only the tiles in sight, and those that are busy, exist as widgets. Tab
/// reaches the current tile; the arrow keys, Page Up and Down, Home and End move to the others. GUI thread.
class ProgramGrid : public QScrollArea {
    Q_OBJECT
public:
    explicit ProgramGrid(QWidget* parent = nullptr);

    void setPrograms(const QVector<ProgramPtr>& programs);
    const QVector<ProgramPtr>& programs() const { return m_programs; }
    /// Replaces the entry with the same ref, if there is one.
    void updateProgram(const ProgramPtr& program);
    void focusCurrent();
    /// Null for a program out of sight.
    LocalAppItemWidget* tile(const ProgramRef& ref) const { return m_tiles.value(ref); }

Q_SIGNALS:
    void tileMade(LocalAppItemWidget* tile);

protected:
    void resizeEvent(QResizeEvent* event) override;
    void scrollContentsBy(int dx, int dy) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    bool focusNextPrevChild(bool next) override;

private:
    int columns() const;
    QPoint placeOf(int index) const;
    void layOut();
    LocalAppItemWidget* makeTile(int index);
    void setCurrent(int index);
    void moveTo(int index);
    void scrollTo(int value);
    int indexOf(const ProgramRef& ref) const;

    QWidget* m_canvas;
    QVector<ProgramPtr> m_programs;
    QHash<ProgramRef, LocalAppItemWidget*> m_tiles;
    ProgramRef m_current;
    QPropertyAnimation m_scroll;
};
