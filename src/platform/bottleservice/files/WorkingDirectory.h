#pragma once

#include <QString>
#include <QStringList>

/// The hidden directories beside the bottles (and templates, components) in which these are made and removed.
/// Only complete ones have their real name; a crash leaves hidden directories, which the next start removes.
namespace WorkingDirectory {

extern const char CreatingPrefix[];
extern const char DeletingPrefix[];

/// An unused path beside the given bottle's directory.
QString pathBeside(const QString& bottlePath, const char* prefix);

/// Renames a directory to a name that must not be in use. Returns an error text, empty on success.
QString moveInto(const QString& from, const QString& to);

/// Exchanges two directories, in one step where the file system can. Returns an error text, empty on success.
QString exchange(const QString& from, const QString& to);

/// The paths of the hidden directories below the root of the bottles.
QStringList leftovers(const QString& root);

}  // namespace WorkingDirectory
