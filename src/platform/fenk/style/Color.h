#pragma once

#include <QColor>

/// Arithmetic on colours that themes and painters share. Pure functions.
namespace Fenk {

/// Contrast of two opaque colours by relative luminance, 1 to 21; the order does not matter.
qreal contrast(const QColor& a, const QColor& b);

/// `share` of `over` mixed into `base`; 0 gives base, 1 gives over. The result is opaque.
QColor mix(const QColor& base, const QColor& over, qreal share);

/// The same colour with another opacity, 0 to 1.
QColor withAlpha(const QColor& color, qreal alpha);

}  // namespace Fenk
