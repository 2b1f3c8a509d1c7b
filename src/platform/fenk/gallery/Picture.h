#pragma once

#include <QImage>
#include <QString>

namespace Gallery {

/// Renders one page of the gallery, or "dialog", "warning", "about" or "menu", in the current theme, as with
/// a compositor. Null for an unknown name.
QImage picture(const QString& page);

/// Joins two images of the same size side by side.
QImage sideBySide(const QImage& left, const QImage& right);

}  // namespace Gallery
