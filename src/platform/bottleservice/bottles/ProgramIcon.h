#pragma once

#include <QString>
#include <QStringList>
#include <atomic>

/// Icons of a bottle's programs and kinds of files, kept as "icons/<id>.png" in it.
namespace ProgramIcon {

/// A made-up id for the icon of something that is no program.
QString idFor(const QString& source);

/// Takes the icon out of the first of the files that has one. The path of the icon, or empty. Runs a child
/// process of at most 25 s: for worker threads.
QString extract(const QString& script, const QString& bottlePath, const QString& id, const QStringList& files,
                const std::atomic_bool& cancelled);

/// The icon that was taken out before; empty if there is none.
QString existing(const QString& bottlePath, const QString& id);

/// Removes the icon of a program that goes.
void remove(const QString& bottlePath, const QString& id);

}  // namespace ProgramIcon
