#include "feedback/client/UploadPlace.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QDebug>
#include <QDir>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QThread>
#include <QThreadPool>
#include <QUuid>

namespace {

QString directory() {
    const QString path = QStandardPaths::writableLocation(QStandardPaths::AppConfigLocation);
    QDir().mkpath(path);
    return path;
}

}  // namespace

QString UploadPlace::newLogs() {
    return directory() + "/logs-XXXXXX";
}

QString UploadPlace::newPictures() {
    return directory() + "/pictures-XXXXXX";
}

std::shared_ptr<QTemporaryDir> UploadPlace::make(const QString& nameTemplate) {
    return {new QTemporaryDir(nameTemplate), [](QTemporaryDir* directory) {
                if (qApp && QThread::currentThread() == qApp->thread())
                    QThreadPool::globalInstance()->start([directory] { delete directory; });
                else
                    delete directory;
            }};
}

QString UploadPlace::newArchive() {
    return directory() + '/' + QUuid::createUuid().toString(QUuid::WithoutBraces) + ".tar.gz";
}

QString UploadPlace::suggestions() {
    return directory() + "/suggestions";
}

void UploadPlace::removeLeftOvers() {
    static const QRegularExpression ours(
        "\\A((?:logs|pictures)-\\w{6}|suggestions|[0-9a-f]{8}(-[0-9a-f]{4}){3}-[0-9a-f]{12}\\.tar\\.gz)\\z");
    const QDateTime oldest = QDateTime::currentDateTime().addSecs(-LeftOverSecs);
    const auto entries =
        QDir(directory()).entryInfoList(QDir::Dirs | QDir::Files | QDir::NoDotAndDotDot | QDir::NoSymLinks);
    for (const QFileInfo& entry : entries) {
        if (!ours.match(entry.fileName()).hasMatch() || entry.lastModified() > oldest)
            continue;
        const bool isRemoved =
            entry.isDir() ? QDir(entry.filePath()).removeRecursively() : QFile::remove(entry.filePath());
        qInfo().noquote() << "left over from an earlier upload:" << entry.fileName()
                          << (isRemoved ? "removed" : "cannot be removed");
    }
}
