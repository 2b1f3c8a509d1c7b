#pragma once

#include <QJsonObject>
#include <QStringList>

#include "bottleservice/desktop/DesktopEntry.h"

/// What the desktop is told so that it opens a kind of files or links with a program of a bottle.
namespace AssociationFiles {

/// The entry for one association. `command` is the application that opens the file.
DesktopEntry entry(const QString& command, const QString& bottle, const QString& key,
                   const QJsonObject& association);

/// A package of MIME types for those that the machine does not define itself, with the patterns of their
/// names; empty if there are none. After the freedesktop.org Shared MIME-info Database.
QByteArray mimePackage(const QJsonObject& associations, const QStringList& keys);

}  // namespace AssociationFiles
