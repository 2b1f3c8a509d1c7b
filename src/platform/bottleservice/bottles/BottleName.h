#pragma once

#include <QString>

#include "bottleservice/result/Reason.h"

/// The rules of bottle names. A name is a directory name, or "public/" and a directory name. Any printable
/// character may be in it, since most names are made of a file's name and its md5. Names come from the bus
/// and must pass check() before they are used in a path.
namespace BottleName {

constexpr int MaximumPartBytes = 255;  ///< what file systems take for one name, in UTF-8

/// Why the name cannot be used; empty when it may be.
Reason check(const QString& name);

/// Of the names of public bottles, and the directory of these.
extern const char PublicPrefix[];
bool isPublic(const QString& name);

/// The name as log lines and error texts may show it: of limited length, control characters replaced.
QString shown(const QString& name);

}  // namespace BottleName
