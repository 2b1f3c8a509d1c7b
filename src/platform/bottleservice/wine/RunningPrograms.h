#pragma once

#include <QJsonObject>
#include <QStringList>
#include <functional>
#include <vector>

#include "bottleservice/wine/Processes.h"

class QObject;

/// What a user would call the running programs of a bottle.
namespace RunningPrograms {

constexpr int GraceMs = 1500;  ///< the usual limit

/// Sorted, each once: by the bottle's program records (by id: "name", "path") where they know the process,
/// else by the file's name. Starting are ids or file names of programs that living launch scripts see to.
/// Wine's own services and helpers, and this system's window tool, are no programs.
QStringList names(const std::vector<Processes::Entry>& processes, const QStringList& starting,
                  const QJsonObject& programs);

/// The path of the Windows program as the process was called; empty before there is one.
QString programOf(const QByteArray& commandLine);
/// Of the bottle's or Wine's own, or this system's window tool.
bool isHelper(const Processes::Entry& process);

/// Calls then in the main thread with the last answer of look: when that has been empty some times in a row,
/// a tenth of a second long, or after the limit, since a program that has closed its window ends a moment
/// later.
void await(QObject* context, int limitMs, const std::function<QStringList()>& look,
           const std::function<void(const QStringList&)>& then);

}  // namespace RunningPrograms
