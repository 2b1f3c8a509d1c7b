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
/// Those of a file's bytes.
QList<QImage> imagesIn(const QByteArray& bytes);

/// Whether the bytes begin like an .ico file.
bool isIco(const QByteArray& bytes);
/// The edge in pixels of what a decoder makes room for when it reads the first frame of a GIF, which may be
/// larger than the frame. -1 for what is no GIF.
int gifEdge(const QByteArray& bytes);

/// The images as one icon; GUI thread only.
QIcon read(const QString& path);

}  // namespace IconFile
