#include "fenk/style/Paint.h"

#include <QImage>
#include <QPixmapCache>
#include <algorithm>
#include <array>
#include <cmath>

#include "fenk/style/Color.h"

namespace Fenk::Paint {

namespace {

/// A rounded box with a blurred edge around it.
QImage blurredBox(const QSize& size, qreal radius) {
    constexpr int reach = Tokens::ShadowBlur;
    constexpr double sigma = reach / 2.0;
    const double opacity = Theme::instance()->isDark() ? Tokens::ShadowDark : Tokens::ShadowLight;
    // Opacity by distance from the edge; the blur extends equally inwards.
    std::array<int, 2 * reach + 1> levels{};
    for (int i = 0; i <= 2 * reach; ++i)
        levels[size_t(i)] = qRound(255 * opacity * std::erfc((i - reach) / (sigma * std::sqrt(2.0))) / 2);

    QImage image(size + QSize(2 * reach, 2 * reach), QImage::Format_ARGB32_Premultiplied);
    const QPointF middle(image.width() / 2.0, image.height() / 2.0);
    const QPointF half(size.width() / 2.0 - radius, size.height() / 2.0 - radius);
    for (int y = 0; y < image.height(); ++y) {
        auto* line = reinterpret_cast<QRgb*>(image.scanLine(y));
        const double dy = std::abs(y + 0.5 - middle.y()) - half.y();
        for (int x = 0; x < image.width(); ++x) {
            const double dx = std::abs(x + 0.5 - middle.x()) - half.x();
            const double outside = std::hypot(std::max(dx, 0.0), std::max(dy, 0.0));
            const double distance = outside + std::min(std::max(dx, dy), 0.0) - radius;
            line[x] = qRgba(0, 0, 0, levels[size_t(qBound(0, qRound(distance) + reach, 2 * reach))]);
        }
    }
    return image;
}

}  // namespace

QColor color(Theme::Role role) {
    return Theme::instance()->color(role);
}

bool enabled(const QStyleOption* option) {
    return option->state & QStyle::State_Enabled;
}

bool hovered(const QStyleOption* option) {
    return enabled(option) && (option->state & QStyle::State_MouseOver);
}

bool pressed(const QStyleOption* option) {
    return enabled(option) && (option->state & QStyle::State_Sunken);
}

bool keyboardFocus(const QStyleOption* option) {
    return (option->state & QStyle::State_HasFocus) && (option->state & QStyle::State_KeyboardFocusChange);
}

QColor step(const QColor& ground) {
    return mix(ground, color(Theme::Text), 0.08);
}

void box(QPainter* painter, const QRectF& rect, qreal radius, const QColor& fill, const QColor& stroke) {
    const Scope scope(painter);
    const bool lined = stroke.isValid() && stroke.alpha() > 0;
    const qreal inset = lined ? Tokens::BorderWidth / 2 : 0;
    painter->setPen(lined ? QPen(stroke, Tokens::BorderWidth) : QPen(Qt::NoPen));
    painter->setBrush(fill.isValid() ? QBrush(fill) : QBrush(Qt::NoBrush));
    const QRectF inner = rect.adjusted(inset, inset, -inset, -inset);
    const qreal r = qMin(radius, qMin(rect.width(), rect.height()) / 2) - inset;
    painter->drawRoundedRect(inner, qMax(qreal(0), r), qMax(qreal(0), r));
}

void ring(QPainter* painter, const QRectF& rect, qreal radius) {
    const Scope scope(painter);
    const qreal half = Tokens::RingWidth / 2.0;
    painter->setPen(QPen(color(Theme::Accent), Tokens::RingWidth));
    painter->setBrush(Qt::NoBrush);
    painter->drawRoundedRect(rect.adjusted(half, half, -half, -half), radius - half, radius - half);
}

void shadow(QPainter* painter, const QRect& rect, qreal radius) {
    const QString key = QString("fenk-shadow-%1-%2-%3-%4")
                            .arg(rect.width())
                            .arg(rect.height())
                            .arg(radius)
                            .arg(Theme::instance()->isDark());
    // Cached, since anything that moves below a dialog repaints the shadow.
    QPixmap blurred;
    if (!QPixmapCache::find(key, &blurred)) {
        blurred = QPixmap::fromImage(blurredBox(rect.size(), radius));
        QPixmapCache::insert(key, blurred);
    }
    const Scope scope(painter);
    painter->setRenderHint(QPainter::SmoothPixmapTransform);
    painter->drawPixmap(rect.topLeft() - QPoint(Tokens::ShadowBlur, Tokens::ShadowBlur - Tokens::ShadowDrop),
                        blurred);
}

void tick(QPainter* painter, const QRectF& rect, const QColor& ink) {
    const Scope scope(painter);
    painter->setPen(QPen(ink, 2, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    const QPointF points[] = {{rect.left() + rect.width() * 0.24, rect.top() + rect.height() * 0.53},
                              {rect.left() + rect.width() * 0.42, rect.top() + rect.height() * 0.71},
                              {rect.left() + rect.width() * 0.76, rect.top() + rect.height() * 0.32}};
    painter->drawPolyline(points, 3);
}

void chevron(QPainter* painter, const QRectF& rect, Qt::ArrowType direction, const QColor& ink) {
    const Scope scope(painter);
    painter->setPen(QPen(ink, Tokens::IconStroke, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter->translate(rect.center());
    painter->rotate(direction == Qt::UpArrow      ? 180
                    : direction == Qt::LeftArrow  ? 90
                    : direction == Qt::RightArrow ? -90
                                                  : 0);
    const QPointF points[] = {{-4, -2}, {0, 2}, {4, -2}};
    painter->drawPolyline(points, 3);
}

QRectF centred(const QRectF& rect, qreal width, qreal height) {
    return {rect.left() + (rect.width() - width) / 2, rect.top() + (rect.height() - height) / 2, width,
            height};
}

}  // namespace Fenk::Paint
