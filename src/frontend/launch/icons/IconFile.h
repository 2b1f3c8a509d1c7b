#pragma once

#include <QIcon>
#include <QImage>
#include <QString>

/// Reads icons of programs, which come from Windows programs or the user; the sizes in them are not trusted.
/// A file takes some tenths of a second at most.
namespace IconFile {

/// All sizes of an .ico file up to 512 pixels, each with the best colour depth, or the single image of
/// another format, also scaled to at most 512 pixels. Empty if nothing is visible or an edge has more than
/// 4096 pixels. Thread-safe.
QList<QImage> images(const QString& path);

/// The images as one icon; GUI thread only.
QIcon read(const QString& path);

}  // namespace IconFile
