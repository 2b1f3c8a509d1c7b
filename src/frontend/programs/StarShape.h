#pragma once

#include <QPolygonF>
#include <QtMath>

/// A star with five points, one of them up.
inline QPolygonF starShape(const QPointF& middle, qreal radius) {
    QPolygonF points;
    for (int i = 0; i < 10; ++i) {
        const qreal angle = qDegreesToRadians(-90.0 + 36 * i);
        const qreal reach = i % 2 ? radius * 0.46 : radius;
        points << middle + QPointF(qCos(angle), qSin(angle)) * reach;
    }
    return points;
}
