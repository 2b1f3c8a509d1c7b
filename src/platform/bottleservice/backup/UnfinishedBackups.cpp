#include "bottleservice/backup/UnfinishedBackups.h"

#include <QDebug>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QUuid>

#include "bottleservice/files/AtomicFile.h"
#include "fenk/system/RegularFile.h"

namespace {

const char Prefix[] = ".backing-up-";
constexpr qint64 MaximumBytes = 8192;

/// Only a file that BackupWriter has made.
bool isUnfinished(const QString& path) {
    const QFileInfo info(path);
    return path.startsWith('/') && info.isFile() && !info.isSymLink() && info.fileName().startsWith('.') &&
           info.fileName().endsWith(".cellarix-new");
}

}  // namespace

QString UnfinishedBackups::note(const QString& dataDir, const QString& unfinished, QString* error) {
    const QString path = dataDir + '/' + Prefix + QUuid::createUuid().toString(QUuid::Id128);
    return AtomicFile::replace(path, QFile::encodeName(unfinished), error) ? path : QString();
}

void UnfinishedBackups::forget(const QString& note) {
    if (!note.isEmpty())
        QFile::remove(note);
}

void UnfinishedBackups::removeAll(const QString& dataDir) {
    const QStringList notes =
        QDir(dataDir).entryList({QString(Prefix) + '*'}, QDir::Files | QDir::Hidden | QDir::NoSymLinks);
    for (const QString& name : notes) {
        const QString note = dataDir + '/' + name;
        const QString path =
            QFile::decodeName(Fenk::RegularFile::read(note, MaximumBytes).value_or(QByteArray()));
        // On a drive that is not there now.
        if (path.startsWith('/') && !QFileInfo(QFileInfo(path).path()).isDir())
            continue;
        if (isUnfinished(path)) {
            qWarning() << "an earlier run of the service was interrupted; removing what it left:" << path;
            QFile::remove(path);
        }
        forget(note);
    }
}
