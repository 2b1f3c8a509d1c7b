#pragma once

#include <QJsonObject>
#include <QString>

#include "bottleservice/bottles/RegistryFile.h"

/// The kinds of files and links that the Windows programs of a bottle have registered for themselves.
/// "assosiate.json" of the bottle keeps them for the application:
///   {".ext" or "scheme": {"mime", "progid", "executable", "comment", "friendly_name", "icon"}}
namespace Associations {

extern const char FileName[];

/// From the classes of a registry. What belongs to Wine itself (its programs lie in C:\windows) is left out,
/// and so is everything that names no program with a full path. "icon" is where Windows would look for it: a
/// Windows path with or without ",index".
QJsonObject collect(const RegistryFile::Keys& classes);

/// The classes of a bottle: those of the user over those of the machine.
RegistryFile::Keys classesOf(const QString& bottlePath);

/// What is written in assosiate.json, as far as it has the form of what the service writes: the bottle's
/// programs can write there too. Empty if there is none.
QJsonObject load(const QString& bottlePath);

}  // namespace Associations
