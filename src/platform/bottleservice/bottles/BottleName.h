#pragma once

#include <QString>

/// The rules of bottle names. A name is a directory name, or "public/" and a directory name; most are made of
/// a file's name and its md5, so that any printable character may be in them. Names come from the bus and
/// become paths only after they passed here.
namespace BottleName {

constexpr int MaximumPartBytes = 255;  ///< what file systems take for one name, in UTF-8

/// Empty if the name may be used, else a sentence that says why not.
QString check(const QString& name);

bool isPublic(const QString& name);

/// The name in a form that is safe to put into a log line or an error: bounded, control characters replaced.
QString shown(const QString& name);

}  // namespace BottleName
