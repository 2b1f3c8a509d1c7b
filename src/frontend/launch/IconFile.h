#pragma once

#include <QIcon>
#include <QImage>
#include <QString>

/// Pictures that Windows programs have brought along, which are never trusted in their sizes. The worst file
/// takes some tenths of a second.
namespace IconFile {

/// All sizes of an .ico file up to 512 pixels, of each the one with the most colours, or the one size of
/// another picture. Empty when there is nothing to see, or when it is larger than an icon is. For any thread.
QList<QImage> images(const QString& path);

/// The same as one icon; GUI thread only.
QIcon read(const QString& path);

}  // namespace IconFile
