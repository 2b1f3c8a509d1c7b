#include "shell/library/ProgramGrid.h"

#include <QApplication>
#include <QKeyEvent>
#include <QScrollBar>
#include <QWheelEvent>
#include <algorithm>

#include "fenk/style/Theme.h"
#include "fenk/style/Tokens.h"
#include "shell/library/LocalAppItemWidget.h"
#include "widgets/GridKeys.h"

using namespace Fenk;

namespace {

constexpr int Gap = Tokens::Space12;
constexpr int Margin = Tokens::Space12;
constexpr int RowsBeyondSight = 1;
constexpr int WheelRows = 1;  ///< for one notch

}  // namespace

ProgramGrid::ProgramGrid(QWidget* parent) : QScrollArea(parent), m_canvas(new QWidget) {
    setObjectName("program_grid");
    setFrameShape(QFrame::NoFrame);
    setFocusPolicy(Qt::NoFocus);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setAutoFillBackground(false);
    viewport()->setAutoFillBackground(false);
    m_canvas->setAutoFillBackground(false);
    setWidget(m_canvas);
    m_canvas->setAutoFillBackground(false);
    verticalScrollBar()->setSingleStep(LocalAppItemWidget::tileSize().height() + Gap);
    m_scroll.setTargetObject(verticalScrollBar());
    m_scroll.setPropertyName("value");
    m_scroll.setEasingCurve(QEasingCurve::OutCubic);
}

int ProgramGrid::columns() const {
    const int tile = LocalAppItemWidget::tileSize().width() + Gap;
    return qMax(1, (viewport()->width() - 2 * Margin + Gap) / tile);
}

QPoint ProgramGrid::placeOf(int index) const {
    const QSize tile = LocalAppItemWidget::tileSize();
    const int count = columns();
    const int used = count * tile.width() + (count - 1) * Gap;
    const int left = (viewport()->width() - used) / 2;
    return {left + (index % count) * (tile.width() + Gap),
            Margin / 2 + (index / count) * (tile.height() + Gap)};
}

void ProgramGrid::setPrograms(const QVector<ProgramPtr>& programs) {
    if (m_programs.size() == programs.size() && m_programs.constData() == programs.constData())
        return;
    const int before = indexOf(m_current);
    const LocalAppItemWidget* current = tile(m_current);
    // The window's own focus widget, which gets the focus back when a dialog over it closes.
    const QWidget* focus = window()->focusWidget();
    const bool focused = current && (focus == current || current->isAncestorOf(focus));
    m_programs = programs;
    const bool gone = indexOf(m_current) < 0;
    if (gone && !m_programs.isEmpty())
        m_current = m_programs[qBound(0, before, m_programs.size() - 1)]->ref;
    layOut();
    if (LocalAppItemWidget* now = tile(m_current))
        now->setTabStop(true);
    // Keyboard users continue at the position of the removed program.
    if (gone && focused)
        focusCurrent();
}

void ProgramGrid::updateProgram(const ProgramPtr& program) {
    const int index = indexOf(program->ref);
    if (index < 0)
        return;
    m_programs[index] = program;
    if (LocalAppItemWidget* shown = tile(program->ref))
        shown->setProgram(program);
}

int ProgramGrid::indexOf(const ProgramRef& ref) const {
    const auto found = std::find_if(m_programs.begin(), m_programs.end(),
                                    [&ref](const ProgramPtr& program) { return program->ref == ref; });
    return found == m_programs.end() ? -1 : int(found - m_programs.begin());
}

LocalAppItemWidget* ProgramGrid::makeTile(int index) {
    const ProgramPtr& program = m_programs[index];
    LocalAppItemWidget*& made = m_tiles[program->ref];
    if (!made) {
        made = new LocalAppItemWidget(program, m_canvas);
        made->installEventFilter(this);
        made->setTabStop(program->ref == m_current);
        made->move(placeOf(index));
        made->show();
        Q_EMIT tileMade(made);
    } else if (made->program() != program) {
        made->setProgram(program);
    }
    made->move(placeOf(index));
    return made;
}

void ProgramGrid::layOut() {
    const int count = columns();
    const int rows = (m_programs.size() + count - 1) / count;
    const int pitch = LocalAppItemWidget::tileSize().height() + Gap;
    m_canvas->resize(viewport()->width(), qMax(viewport()->height(), rows * pitch + Margin));
    const int top = verticalScrollBar()->value();
    const int first = qMax(0, top / pitch - RowsBeyondSight) * count;
    const int last =
        qMin(m_programs.size(), ((top + viewport()->height()) / pitch + 1 + RowsBeyondSight) * count);

    QHash<ProgramRef, LocalAppItemWidget*> old;
    old.swap(m_tiles);
    for (int index = first; index < last; ++index) {
        const ProgramRef& ref = m_programs[index]->ref;
        if (LocalAppItemWidget* kept = old.take(ref))
            m_tiles.insert(ref, kept);
        makeTile(index);
    }
    for (LocalAppItemWidget* left : qAsConst(old)) {
        const int index = left->isBusy() ? indexOf(left->ref()) : -1;
        if (index >= 0) {
            m_tiles.insert(left->ref(), left);
            makeTile(index);
            continue;
        }
        left->hide();
        left->deleteLater();
    }
}

void ProgramGrid::resizeEvent(QResizeEvent* event) {
    QScrollArea::resizeEvent(event);
    layOut();
}

void ProgramGrid::scrollContentsBy(int dx, int dy) {
    QScrollArea::scrollContentsBy(dx, dy);
    layOut();
}

void ProgramGrid::scrollTo(int value) {
    QScrollBar* bar = verticalScrollBar();
    const int target = qBound(bar->minimum(), value, bar->maximum());
    m_scroll.stop();
    const int duration = Theme::instance()->duration(Tokens::MoveMs);
    if (duration == 0) {
        bar->setValue(target);
        return;
    }
    m_scroll.setDuration(duration);
    m_scroll.setStartValue(bar->value());
    m_scroll.setEndValue(target);
    m_scroll.start();
}

void ProgramGrid::wheelEvent(QWheelEvent* event) {
    // A touchpad scrolls smoothly already.
    if (!event->pixelDelta().isNull() || event->angleDelta().y() == 0) {
        m_scroll.stop();
        QScrollArea::wheelEvent(event);
        return;
    }
    const int pitch = LocalAppItemWidget::tileSize().height() + Gap;
    const bool moving = m_scroll.state() == QAbstractAnimation::Running;
    const int from = moving ? m_scroll.endValue().toInt() : verticalScrollBar()->value();
    scrollTo(from - event->angleDelta().y() * WheelRows * pitch / QWheelEvent::DefaultDeltasPerStep);
    event->accept();
}

void ProgramGrid::setCurrent(int index) {
    if (LocalAppItemWidget* before = tile(m_current))
        before->setTabStop(false);
    m_current = m_programs[index]->ref;
    if (LocalAppItemWidget* now = tile(m_current))
        now->setTabStop(true);
}

void ProgramGrid::focusCurrent() {
    if (m_programs.isEmpty())
        return;
    const int index = indexOf(m_current);
    moveTo(index < 0 ? 0 : index);
}

void ProgramGrid::moveTo(int index) {
    if (m_programs.isEmpty())
        return;
    index = qBound(0, index, m_programs.size() - 1);
    const int top = placeOf(index).y() - Margin / 2;
    const int bottom = top + LocalAppItemWidget::tileSize().height() + Margin;
    const int value = verticalScrollBar()->value();
    LocalAppItemWidget* wanted = makeTile(index);
    setCurrent(index);
    wanted->setFocus(Qt::TabFocusReason);
    if (top < value)
        scrollTo(top);
    else if (bottom > value + viewport()->height())
        scrollTo(bottom - viewport()->height());
}

/// What it leaves alone the window takes: Up for the search field, letters for a search.
void ProgramGrid::keyPressEvent(QKeyEvent* event) {
    const int rows = qMax(1, viewport()->height() / (LocalAppItemWidget::tileSize().height() + Gap));
    if (const auto to =
            GridKeys::target(event->key(), indexOf(m_current), columns(), rows, m_programs.size()))
        moveTo(*to);
    else
        event->ignore();
}

bool ProgramGrid::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::FocusIn) {
        if (auto* item = qobject_cast<LocalAppItemWidget*>(watched)) {
            const int index = indexOf(item->ref());
            if (index >= 0)
                setCurrent(index);
        }
    }
    return QScrollArea::eventFilter(watched, event);
}

/// Skips QScrollArea, which would scroll to the focused part of a tile instead of to the tile.
bool ProgramGrid::focusNextPrevChild(bool next) {
    return QWidget::focusNextPrevChild(next);
}
