#pragma once

#include <QImage>
#include <QString>

namespace Gallery {

/// Draws one page of the gallery, or "dialog", "warning", "about" or "menu", as it looks on a screen with a
/// compositor, in the theme that is in force. An unknown name gives a null image.
QImage picture(const QString& page);

/// Two pictures of the same size beside each other.
QImage sideBySide(const QImage& left, const QImage& right);

}  // namespace Gallery
