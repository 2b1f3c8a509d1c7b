#pragma once

#include <QJsonObject>
#include <QString>

#include "bottleservice/bottles/RegistryFile.h"

/// The file types and link schemes that the Windows programs of a bottle have registered, which
/// "assosiate.json" in the bottle keeps for the application:
///   {".ext" or "scheme": {"mime", "progid", "executable", "comment", "friendly_name", "icon"}}
namespace Associations {

extern const char FileName[];

/// Finds them in the classes of a registry. Entries of Wine itself (programs in C:\windows) and those without
/// the full path of a program are left out. "icon" is where Windows would look for it: a Windows path with or
/// without ",index".
QJsonObject collect(const RegistryFile::Keys& classes);

/// The classes of a bottle; those of the user replace those of the machine.
RegistryFile::Keys classesOf(const QString& bottlePath);

/// Reads assosiate.json. Leaves out entries that the service would not write, since the bottle's programs can
/// change the file. Empty if there is no file.
QJsonObject load(const QString& bottlePath);

}  // namespace Associations
