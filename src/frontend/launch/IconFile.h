#pragma once

#include <QIcon>
#include <QString>

/// Pictures that Windows programs have brought along, which are never trusted in their sizes. GUI thread; the
/// worst file takes some tenths of a second.
namespace IconFile {

/// An icon with all sizes of an .ico file up to 512 pixels, of each the one with the most colours, or with
/// the one size of another picture. Null when there is nothing to see, or when it is larger than an icon is.
QIcon read(const QString& path);

}  // namespace IconFile
