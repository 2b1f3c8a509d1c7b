#pragma once

#include <QByteArray>
#include <QLocale>
#include <QStringList>
#include <QVector>

/// The names of files in a zip archive. Old archivers write them in the code page of their Windows and do not
/// say which; no byte of them is trusted.
namespace ArchiveNames {

/// All names of one archive, which share an encoding: UTF-8, or else the code page that zip archives have in
/// the user's language and country. In Western Europe and in English, names in common simplified characters
/// are Chinese nevertheless, since the accents of those languages hardly make such pairs. "\" becomes "/".
QStringList decoded(const QVector<QByteArray>& names, const QLocale& locale);

/// Whether the name leads to a place below the directory in which the archive is unpacked.
bool isInside(const QString& name);

}  // namespace ArchiveNames
