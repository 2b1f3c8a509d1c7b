#pragma once

#include <QByteArray>
#include <QImage>

/// Renders SVG icons. Elements whose cost is not bounded and references to other files are not rendered.
/// Thread-safe.
namespace SvgPicture {

/// Whether the SVG renders each element a bounded number of times.
bool isBounded(const QByteArray& text);
/// Renders into a square of `edge` pixels, filling at least one direction; null if the SVG is invalid or not
/// allowed.
QImage draw(const QByteArray& text, int edge);

}  // namespace SvgPicture
