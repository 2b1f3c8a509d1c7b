#include "bottleservice/bottles/ProgramIcon.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QProcess>
#include <QScopeGuard>
#include <QUuid>

#include "bottleservice/bottles/Programs.h"

namespace {

constexpr int PollMs = 200;
constexpr int TimeoutMs = 25000;  // the script gives up after 20 s

const QUuid Namespace("{b1e0a5f2-5a0f-4a55-9d4c-0d6a2f6f7a10}");

QString directoryOf(const QString& bottlePath) {
    return bottlePath + "/icons";
}

QString nameOf(const QString& id) {
    return id + ".png";
}

/// The script makes the directory that it is given, also when the bottle was deleted while it ran.
void removeLeftover(const QString& bottlePath, const QString& id) {
    if (QFileInfo::exists(bottlePath + "/drive_c"))
        return;
    ProgramIcon::remove(bottlePath, id);
    QDir().rmdir(directoryOf(bottlePath));  // only when it is empty
    QDir().rmdir(bottlePath);
}

}  // namespace

QString ProgramIcon::idFor(const QString& source) {
    return QUuid::createUuidV5(Namespace, source.toLower()).toString(QUuid::WithoutBraces);
}

QString ProgramIcon::extract(const QString& script, const QString& bottlePath, const QString& id,
                             const QStringList& files, const std::atomic_bool& cancelled) {
    const QString directory = directoryOf(bottlePath);
    if (!Programs::isProgramId(id) || QFileInfo(directory).isSymLink())
        return {};
    // Not the directories above: a bottle that was deleted meanwhile must not come back as an empty one.
    if (!QFileInfo(directory).isDir() && !QDir().mkdir(directory))
        return {};
    const QString icon = directory + '/' + nameOf(id);
    const auto cleanUp = qScopeGuard([&] { removeLeftover(bottlePath, id); });
    for (const QString& file : files) {
        if (!QFileInfo(file).isFile())
            continue;
        QProcess process;
        process.setStandardInputFile(QProcess::nullDevice());
        process.setStandardOutputFile(QProcess::nullDevice());
        process.setStandardErrorFile(QProcess::nullDevice());
        process.start(script, {file, nameOf(id), directory});
        QElapsedTimer elapsed;
        elapsed.start();
        while (!process.waitForFinished(PollMs) && process.state() != QProcess::NotRunning && !cancelled &&
               elapsed.elapsed() < TimeoutMs) {
        }
        if (process.state() != QProcess::NotRunning) {
            process.kill();
            process.waitForFinished(1000);
        }
        if (!existing(bottlePath, id).isEmpty())
            return icon;
    }
    return {};
}

QString ProgramIcon::existing(const QString& bottlePath, const QString& id) {
    const QFileInfo icon(directoryOf(bottlePath) + '/' + nameOf(id));
    return icon.isFile() && !icon.isSymLink() ? icon.filePath() : QString();
}

void ProgramIcon::remove(const QString& bottlePath, const QString& id) {
    if (Programs::isProgramId(id) && !QFileInfo(directoryOf(bottlePath)).isSymLink())
        QFile::remove(directoryOf(bottlePath) + '/' + nameOf(id));
}
