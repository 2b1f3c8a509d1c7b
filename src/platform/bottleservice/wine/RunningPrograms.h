#pragma once

#include <QJsonObject>
#include <QStringList>
#include <functional>
#include <vector>

#include "bottleservice/wine/Processes.h"

class QObject;

/// The names of the running programs of a bottle, as a user knows them.
namespace RunningPrograms {

constexpr int GraceMs = 1500;  ///< the usual limit

/// The names, sorted, each once: from the bottle's program records (by id: "name", "path") where they know
/// the process, otherwise the file's name. `starting` are ids or file names of programs that launch scripts
/// have started or are about to. Leaves out Wine's own services and helpers and this system's window tool.
QStringList names(const std::vector<Processes::Entry>& processes, const QStringList& starting,
                  const QJsonObject& programs);

/// The path of the Windows program in a command line; empty while there is none yet.
QString programOf(const QByteArray& commandLine);
/// Whether it is a service or helper of Wine, or this system's window tool.
bool isHelper(const Processes::Entry& process);

/// Calls `findRunning` until it has returned nothing for a tenth of a second, or until the limit, since a
/// program that has closed its window ends a moment later. Then calls `then` with the last result, in the
/// main thread, unless context has been destroyed.
void await(QObject* context, int limitMs, const std::function<QStringList()>& findRunning,
           const std::function<void(const QStringList&)>& then);

}  // namespace RunningPrograms
