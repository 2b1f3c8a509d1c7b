#include "programs/StarRating.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>

#include "fenk/style/Paint.h"
#include "fenk/style/Tokens.h"
#include "fenk/style/WidgetLook.h"
#include "programs/StarShape.h"

using namespace Fenk;

namespace {

constexpr int Count = 5;
constexpr int Edge = 13;

}  // namespace

StarRating::StarRating(QWidget* parent) : QWidget(parent) {
    setMouseTracking(true);
    setFixedSize(sizeHint());
    setRingRadius(this, Tokens::RadiusSmall);
    setStars(0);
}

QSize StarRating::sizeHint() const {
    return {Count * Edge, Tokens::CompactHeight};
}

void StarRating::setStars(int stars) {
    m_stars = qBound(0, stars, Count);
    setAccessibleName(m_stars ? tr("Rating: %1 of 5").arg(m_stars) : tr("Not rated"));
    setToolTip(accessibleName());
    update();
}

int StarRating::starAt(const QPoint& position) const {
    return qBound(1, position.x() / Edge + 1, Count);
}

void StarRating::setPreview(int stars) {
    m_preview = m_isReadOnly ? 0 : stars;
    update();
}

void StarRating::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const Paint::Scope scope(&painter);
    const int shown = m_preview ? m_preview : m_stars;
    for (int i = 0; i < Count; ++i) {
        const QPointF middle(Edge * i + Edge / 2.0, height() / 2.0);
        const bool full = i < shown;
        painter.setPen(QPen(Paint::color(full ? Theme::Warning : Theme::Disabled), 1, Qt::SolidLine,
                            Qt::RoundCap, Qt::RoundJoin));
        painter.setBrush(full ? QBrush(Paint::color(Theme::Warning)) : QBrush());
        painter.drawPolygon(starShape(middle, 5.2));
    }
}

void StarRating::mouseMoveEvent(QMouseEvent* event) {
    setPreview(starAt(event->pos()));
}

void StarRating::mousePressEvent(QMouseEvent* event) {
    event->setAccepted(!m_isReadOnly);
}

void StarRating::mouseReleaseEvent(QMouseEvent* event) {
    if (!m_isReadOnly && event->button() == Qt::LeftButton && rect().contains(event->pos()))
        Q_EMIT rated(starAt(event->pos()));
}

void StarRating::leaveEvent(QEvent*) {
    setPreview(0);
}

void StarRating::keyPressEvent(QKeyEvent* event) {
    const int now = m_preview ? m_preview : m_stars;
    if (m_isReadOnly)
        QWidget::keyPressEvent(event);
    else if (event->key() == Qt::Key_Left)
        setPreview(qMax(1, now - 1));
    else if (event->key() == Qt::Key_Right)
        setPreview(qMin(Count, now + 1));
    else if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter ||
             event->key() == Qt::Key_Space) {
        if (m_preview)
            Q_EMIT rated(m_preview);
    } else
        QWidget::keyPressEvent(event);
}

void StarRating::focusOutEvent(QFocusEvent* event) {
    QWidget::focusOutEvent(event);
    setPreview(0);
}
