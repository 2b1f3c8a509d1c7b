#include "shell/configuration/page/LogFile.h"

#include <fcntl.h>

#include <QDebug>
#include <QDir>
#include <QFileInfo>
#include <QSaveFile>

#include "fenk/system/OwnedFd.h"
#include "fenk/system/RegularFile.h"

bool LogFile::empty(const QString& path) {
    const bool hasFolder = !path.isEmpty() && QDir().mkpath(QFileInfo(path).path());
    // A link could lead to a file that is not the bottle's, and a pipe would wait for ever.
    const Fenk::OwnedFd file(
        hasFolder ? ::open(QFile::encodeName(path).constData(),
                           O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK, 0644)
                  : -1);
    if (file.isValid())
        return true;
    qWarning().noquote() << "cannot empty the log" << path;
    return false;
}

std::optional<QByteArray> LogFile::end(const QString& path, qint64 maximum) {
    QFile file;
    if (!Fenk::RegularFile::open(file, path))
        return {};
    const bool isCut = file.size() > maximum;
    if (isCut && !file.seek(file.size() - maximum))
        return {};
    const QByteArray bytes = file.read(maximum);
    return isCut ? bytes.mid(bytes.indexOf('\n') + 1) : bytes;
}

LogFile::Copy LogFile::copy(const QString& from, const QString& to) {
    const std::optional<QByteArray> bytes = end(from, KeptBytes);
    QSaveFile target(to);
    const bool isWritten = bytes && target.open(QIODevice::WriteOnly) &&
                           target.write(*bytes) == bytes->size() && target.commit();
    return {isWritten, QFileInfo(from).size() > KeptBytes};
}
