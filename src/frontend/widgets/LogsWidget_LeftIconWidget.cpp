#include "widgets/LogsWidget_LeftIconWidget.h"

#include <QCoreApplication>
#include <QPaintEvent>
#include <QTextBlock>

#include "fenk/style/Paint.h"
#include "fenk/style/SymbolicIconEngine.h"
#include "widgets/LogsWidget.h"

using namespace Fenk;

namespace {

constexpr int MarkerSide = Tokens::Space12;
constexpr int TimeLeft = MarkerSide + Tokens::Space4;

}  // namespace

LogsWidget_LeftIconWidget::LogsWidget_LeftIconWidget(LogsWidget* logs) : QWidget(logs), m_logs(logs) {
    setFont(Theme::instance()->font(Theme::Fixed));
}

QSize LogsWidget_LeftIconWidget::sizeHint() const {
    return {TimeLeft + fontMetrics().horizontalAdvance("00:00:00") + Tokens::Space8, 0};
}

void LogsWidget_LeftIconWidget::paintEvent(QPaintEvent* event) {
    QPainter painter(this);
    const QSize side(MarkerSide, MarkerSide);
    const QPixmap marker =
        tintedPixmap(Theme::icon("fenk-error"), side, devicePixelRatioF(), Paint::color(Theme::Danger));
    const int lineHeight = fontMetrics().height();
    painter.setPen(Paint::color(Theme::Secondary));
    QTextBlock block = m_logs->firstVisibleBlock();
    qreal top = m_logs->blockBoundingGeometry(block).translated(m_logs->contentOffset()).top();
    for (; block.isValid() && top <= event->rect().bottom(); block = block.next()) {
        const int line = block.blockNumber();
        if (line < m_logs->lineCount()) {
            if (m_logs->isError(line))
                painter.drawPixmap(QPointF(0, top + (lineHeight - MarkerSide) / 2.0), marker);
            painter.drawText(QRectF(TimeLeft, top, width() - TimeLeft, lineHeight), m_logs->timeOf(line));
        }
        top += m_logs->blockBoundingRect(block).height();
    }
}

void LogsWidget_LeftIconWidget::wheelEvent(QWheelEvent* event) {
    QCoreApplication::sendEvent(m_logs->viewport(), event);
}
