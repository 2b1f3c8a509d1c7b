#pragma once

#include <QString>
#include <QStringList>

/// The hidden directories beside the bottles in which bottles are made and taken apart. Only whole bottles
/// ever stand under a bottle's name; a crash leaves hidden directories, which the next start removes.
namespace WorkingDirectory {

extern const char CreatingPrefix[];
extern const char DeletingPrefix[];

/// An unused path beside the given bottle's directory.
QString pathBeside(const QString& bottlePath, const char* prefix);

/// Moves a directory to a name that must not be taken. Empty on success, else a sentence.
QString moveInto(const QString& from, const QString& to);

/// Puts a directory in the place of another one, which afterwards stands where the first was. At once, where
/// the file system can. Empty on success, else a sentence.
QString exchange(const QString& from, const QString& to);

/// Paths of all that is left of earlier work below the root of the bottles.
QStringList leftovers(const QString& root);

}  // namespace WorkingDirectory
