#include "fenk/style/Color.h"

#include <QtMath>
#include <algorithm>

namespace Fenk {

namespace {

qreal linear(qreal channel) {
    return channel <= 0.04045 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
}

qreal luminance(const QColor& c) {
    return 0.2126 * linear(c.redF()) + 0.7152 * linear(c.greenF()) + 0.0722 * linear(c.blueF());
}

}  // namespace

qreal contrast(const QColor& a, const QColor& b) {
    const qreal first = luminance(a);
    const qreal second = luminance(b);
    return (std::max(first, second) + 0.05) / (std::min(first, second) + 0.05);
}

QColor mix(const QColor& base, const QColor& over, qreal share) {
    const qreal t = std::clamp(share, qreal(0), qreal(1));
    return QColor::fromRgbF(base.redF() + (over.redF() - base.redF()) * t,
                            base.greenF() + (over.greenF() - base.greenF()) * t,
                            base.blueF() + (over.blueF() - base.blueF()) * t);
}

QColor withAlpha(const QColor& color, qreal alpha) {
    QColor result = color;
    result.setAlphaF(std::clamp(alpha, qreal(0), qreal(1)));
    return result;
}

}  // namespace Fenk
