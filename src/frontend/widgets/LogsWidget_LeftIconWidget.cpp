#include "widgets/LogsWidget_LeftIconWidget.h"

#include <QCoreApplication>
#include <QPaintEvent>

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
    for (const LogView::ShownLine& shown : m_logs->shownLines()) {
        if (shown.top + lineHeight < event->rect().top() || shown.top > event->rect().bottom())
            continue;
        if (m_logs->store().isError(shown.line))
            painter.drawPixmap(QPointF(0, shown.top + (lineHeight - MarkerSide) / 2.0), marker);
        painter.drawText(QRectF(TimeLeft, shown.top, width() - TimeLeft, lineHeight),
                         m_logs->store().timeOf(shown.line));
    }
}

void LogsWidget_LeftIconWidget::wheelEvent(QWheelEvent* event) {
    QCoreApplication::sendEvent(m_logs->viewport(), event);
}
