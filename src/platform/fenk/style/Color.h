#pragma once

#include <QColor>

/// Colour arithmetic for themes and painters. Pure functions.
namespace Fenk {

/// Contrast ratio of two opaque colours by relative luminance, 1 to 21; symmetric.
qreal contrast(const QColor& a, const QColor& b);

/// Mixes `share` of `over` into `base`: 0 returns base, 1 returns over. The result is opaque.
QColor mix(const QColor& base, const QColor& over, qreal share);

/// The same colour with another opacity, 0 to 1.
QColor withAlpha(const QColor& color, qreal alpha);

}  // namespace Fenk
