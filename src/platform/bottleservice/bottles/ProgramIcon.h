#pragma once

#include <QString>
#include <QStringList>
#include <atomic>

/// The icons of a bottle's programs and file types, kept as "icons/<id>.png" in it.
namespace ProgramIcon {

/// An id for the icon of something that is no program.
QString idFor(const QString& source);

/// Extracts the icon of the first of the files that has one. Returns the icon's path, or an empty text. Runs
/// a child process for at most 25 s; for worker threads.
QString extract(const QString& script, const QString& bottlePath, const QString& id, const QStringList& files,
                const std::atomic_bool& cancelled);

/// The path of an icon that was extracted before; empty if there is none.
QString existing(const QString& bottlePath, const QString& id);

/// Removes the icon of a program.
void remove(const QString& bottlePath, const QString& id);

}  // namespace ProgramIcon
