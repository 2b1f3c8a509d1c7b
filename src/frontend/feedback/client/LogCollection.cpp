#include "feedback/client/LogCollection.h"

#include <unistd.h>

#include <QDebug>
#include <QDir>
#include <QStandardPaths>
#include <algorithm>

#include "core/base/Paths.h"
#include "fenk/system/RegularFile.h"

namespace {

const char OwnLog[] = "cellarix.log";

/// Where a copy goes; logs of different directories may have the same name.
QString freeName(const QString& directory, const QString& name) {
    QString path = directory + '/' + name;
    for (int number = 2; QFileInfo::exists(path); ++number)
        path = QString("%1/%2-%3").arg(directory).arg(number).arg(name);
    return path;
}

/// Returns the number of bytes that were copied.
qint64 copyEnd(const QString& path, const QString& copy) {
    QFile source;
    QFile target(copy);
    if (!Fenk::RegularFile::open(source, path)) {
        qWarning().noquote() << "Failed to copy file:" << path << "to" << copy;
        return 0;
    }
    if (!target.open(QIODevice::WriteOnly)) {
        qWarning().noquote() << "Failed to open file:" << copy << "for writing";
        return 0;
    }
    if (source.size() > LogCollection::MaximumLogBytes)
        source.seek(source.size() - LogCollection::MaximumLogBytes);
    const QByteArray bytes = source.read(LogCollection::MaximumLogBytes);
    if (target.write(bytes) != bytes.size())
        qWarning().noquote() << "Failed to copy file:" << path << "to" << copy;
    return bytes.size();
}

QFileInfoList logsIn(const QString& directory, const QString& pattern) {
    qInfo().noquote() << "collect " + directory;
    return QDir(directory).entryInfoList({pattern}, QDir::Files | QDir::NoSymLinks | QDir::Hidden);
}

}  // namespace

namespace LogCollection {

Sources Sources::of(const QString& bottlePath) {
    return {bottlePath, Paths::bottlesDataDir(),
            QStandardPaths::writableLocation(QStandardPaths::CacheLocation)};
}

void gather(const Sources& sources, const QString& directory) {
    qint64 total = copyEnd(sources.bottlePath + "/bottle.yml", freeName(directory, "bottle.yml"));
    QFileInfoList logs = logsIn(sources.bottlePath + "/logs", "*.log") +
                         logsIn(sources.serviceDirectory, "*.log") +
                         logsIn(sources.applicationDirectory, OwnLog);
    std::stable_sort(logs.begin(), logs.end(), [](const QFileInfo& a, const QFileInfo& b) {
        return a.lastModified() > b.lastModified();
    });
    int left = logs.size();
    for (const QFileInfo& log : qAsConst(logs)) {
        if (total + qMin(log.size(), MaximumLogBytes) > MaximumBytes)
            break;
        total += copyEnd(log.filePath(), freeName(directory, log.fileName()));
        --left;
    }
    if (left > 0)
        qInfo() << left << "older logs are left out";
}

bool isOwnDirectory(const QString& path) {
    const QFileInfo place(path);
    return place.isDir() && !place.isSymLink() && place.ownerId() == ::geteuid();
}

QStringList ratingFiles(const QString& bottleName, const QString& bottlePath, const QString& directory) {
    const QString settings = bottlePath + "/bottle.yml";
    if (bottlePath.isEmpty()) {
        qWarning().noquote() << "bottlesPath for " + bottleName + "is empty";
        return {};
    }
    if (!QFileInfo(settings).isFile()) {
        qWarning().noquote() << "bottle.yml for " + bottleName + "is not exists";
        return {};
    }
    QStringList files;
    if (isOwnDirectory(directory)) {
        for (const QFileInfo& file : QDir(directory).entryInfoList(QDir::Files | QDir::NoSymLinks))
            files += file.filePath();
    }
    return files + QStringList{settings};
}

}  // namespace LogCollection
