#pragma once

#include <QIcon>
#include <QImage>
#include <QString>

/// The pictures of programs, which Windows programs have brought along or users have chosen, and which are
/// never trusted in their sizes. The worst file takes some tenths of a second.
namespace IconFile {

/// All sizes of an .ico file up to 512 pixels, of each the one with the most colours, or the one size of
/// another picture or drawing, of at most 512 pixels too. Empty when there is nothing to see, or when the
/// picture has more than 4096 pixels on an edge. For any thread.
QList<QImage> images(const QString& path);

/// The same as one icon; GUI thread only.
QIcon read(const QString& path);

}  // namespace IconFile
