#include "bottleservice/wine/RunningPrograms.h"

#include <QElapsedTimer>
#include <QTimer>
#include <algorithm>

namespace RunningPrograms {

namespace {

constexpr int PollMs = 40;
constexpr int EmptyChecks = 3;      // during an exec a process has no environment
constexpr int LoaderArguments = 3;  // an emulator and a loader may come before the program

/// In addition to those that serve the whole bottle.
const char* const Helpers[] = {
    "conhost.exe", "dllhost.exe",  "enum_process_window.exe", "mscorsvw.exe", "spoolsv.exe", "start.exe",
    "tabtip.exe",  "taskkill.exe", "winemenubuilder.exe",     "wineboot.exe", "winedbg.exe"};

QString baseName(const QString& path) {
    return path.mid(qMax(path.lastIndexOf('\\'), path.lastIndexOf('/')) + 1);
}

bool isHelperName(const QString& fileName) {
    return std::any_of(std::begin(Helpers), std::end(Helpers), [&fileName](const char* helper) {
        return fileName.compare(QLatin1String(helper), Qt::CaseInsensitive) == 0;
    });
}

QString nameOf(const Processes::Entry& process, const QString& path, const QJsonObject& programs) {
    const QString own = programs[QString::fromUtf8(process.program)].toObject()["name"].toString();
    if (!own.isEmpty())
        return own;
    for (const QJsonValue& program : programs) {
        const QString name = program.toObject()["name"].toString();
        if (!name.isEmpty() && program.toObject()["path"].toString().compare(path, Qt::CaseInsensitive) == 0)
            return name;
    }
    return path.isEmpty() ? QString::fromUtf8(process.executable) : baseName(path);
}

}  // namespace

QString programOf(const QByteArray& commandLine) {
    for (const QByteArray& argument : commandLine.split('\0').mid(0, LoaderArguments)) {
        const QString path = QString::fromUtf8(argument);
        const QString name = baseName(path).toLower();
        const bool isLoader = name.startsWith("wine") && !name.endsWith(".exe");
        if (!name.isEmpty() && !isLoader && name != "box64" && name != "box86")
            return path;
    }
    return {};
}

bool isHelper(const Processes::Entry& process) {
    return Processes::servesWholeBottle(process) || isHelperName(baseName(programOf(process.commandLine)));
}

QStringList names(const std::vector<Processes::Entry>& processes, const QStringList& starting,
                  const QJsonObject& programs) {
    QStringList found;
    QStringList files;
    for (const Processes::Entry& process : processes) {
        if (isHelper(process))
            continue;
        const QString path = programOf(process.commandLine);
        files += baseName(path).toLower();
        found += nameOf(process, path, programs);
    }
    // A launch script runs as long as its program does.
    for (const QString& word : starting) {
        const QString name = programs[word].toObject()["name"].toString();
        if (!isHelperName(word) && !files.contains(word.toLower()))
            found += name.isEmpty() ? word : name;
    }
    found.removeDuplicates();
    found.sort(Qt::CaseInsensitive);
    return found;
}

void await(QObject* context, int limitMs, const std::function<QStringList()>& findRunning,
           const std::function<void(const QStringList&)>& then) {
    auto* poll = new QTimer(context);
    QElapsedTimer since;
    since.start();
    QObject::connect(poll, &QTimer::timeout, context,
                     [poll, since, limitMs, findRunning, then, emptyChecks = 0]() mutable {
                         const QStringList running = findRunning();
                         emptyChecks = running.isEmpty() ? emptyChecks + 1 : 0;
                         if (running.isEmpty() ? emptyChecks < EmptyChecks : !since.hasExpired(limitMs))
                             return;
                         poll->stop();
                         poll->deleteLater();
                         then(running);
                     });
    poll->start(PollMs);
}

}  // namespace RunningPrograms
