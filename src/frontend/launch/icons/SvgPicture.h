#pragma once

#include <QByteArray>
#include <QImage>

/// Drawings as icons. A drawing is a small program: what could grow without end, or leads to other files, is
/// not drawn. For any thread.
namespace SvgPicture {

/// Whether the text is a drawing of which each part is drawn a bounded number of times.
bool isBounded(const QByteArray& text);
/// In a square of the given edge, filled in one direction at least; null when it can't or must not be drawn.
QImage draw(const QByteArray& text, int edge);

}  // namespace SvgPicture
