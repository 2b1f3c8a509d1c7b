#pragma once

#include <QJsonObject>
#include <QStringList>

#include "bottleservice/desktop/DesktopEntry.h"

/// The files that make the desktop open a file type or link scheme with a program of a bottle.
namespace AssociationFiles {

/// The entry for one association. `command` is the application that opens the file.
DesktopEntry entry(const QString& command, const QString& bottle, const QString& key,
                   const QJsonObject& association);

/// A package of MIME types with their file name patterns, for those that the machine does not define itself;
/// empty if there are none. The format is the freedesktop.org Shared MIME-info Database.
QByteArray mimePackage(const QJsonObject& associations, const QStringList& keys);

}  // namespace AssociationFiles
