#pragma once

#include <QString>

/// The icon of a program of a bottle, kept as "icons/<id>.png" in it.
namespace ProgramIcon {

/// Takes the icon out of the first of the files that has one. The path of the icon, or empty. Runs a child
/// process of at most some seconds: for worker threads.
QString extract(const QString& script, const QString& bottlePath, const QString& id,
                const QStringList& files);

/// Removes the icon of a program that goes.
void remove(const QString& bottlePath, const QString& id);

}  // namespace ProgramIcon
