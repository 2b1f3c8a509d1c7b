#pragma once

#include <QString>
#include <QStringList>
#include <atomic>

/// The icon of a program of a bottle, kept as "icons/<id>.png" in it.
namespace ProgramIcon {

/// Takes the icon out of the first of the files that has one. The path of the icon, or empty. Runs a child
/// process of at most 25 s: for worker threads.
QString extract(const QString& script, const QString& bottlePath, const QString& id, const QStringList& files,
                const std::atomic_bool& cancelled);

/// Removes the icon of a program that goes.
void remove(const QString& bottlePath, const QString& id);

}  // namespace ProgramIcon
