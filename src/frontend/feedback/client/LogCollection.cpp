#include "feedback/client/LogCollection.h"

#include <QDebug>
#include <QDir>
#include <QStandardPaths>
#include <algorithm>

#include "core/base/LogScrub.h"
#include "core/base/Paths.h"
#include "feedback/client/SuggestionFile.h"
#include "fenk/system/RegularFile.h"

namespace {

using LogCollection::MaximumLogBytes;

const QString Settings = QStringLiteral("bottle.yml");
const char OwnLog[] = "cellarix.log";
constexpr int LongestPart = 4096;  // of a line, to search for its beginning

/// Where a copy goes; logs of different directories may have the same name.
QString freeName(const QString& directory, const QString& name) {
    QString path = directory + '/' + name;
    for (int number = 2; QFileInfo::exists(path); ++number)
        path = QString("%1/%2-%3").arg(directory).arg(number).arg(name);
    return path;
}

/// The end of a file, from the beginning of a line when one begins near: a name of which only a part is left
/// would not be known. A little more than what is kept of it.
QByteArray readEnd(QFile* file) {
    const qint64 begin = qMax(qint64(0), file->size() - MaximumLogBytes - LongestPart);
    file->seek(begin);
    const QByteArray bytes = file->read(MaximumLogBytes + LongestPart);
    return begin > 0 ? bytes.mid(bytes.left(LongestPart).indexOf('\n') + 1) : bytes;
}

/// Returns the number of bytes that were written.
qint64 copyEnd(const LogScrub* scrub, const QString& path, const QString& copy) {
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
    const QByteArray read = readEnd(&source);
    const QByteArray bytes = (scrub ? scrub->scrubbed(read) : read).right(MaximumLogBytes);
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
    const LogScrub scrub;
    qint64 total = copyEnd(&scrub, sources.bottlePath + '/' + Settings, freeName(directory, Settings));
    QFileInfoList logs = logsIn(sources.bottlePath + "/logs", "*") +
                         logsIn(sources.serviceDirectory, "*.log") +
                         logsIn(sources.applicationDirectory, OwnLog);
    std::stable_sort(logs.begin(), logs.end(), [](const QFileInfo& a, const QFileInfo& b) {
        return a.lastModified() > b.lastModified();
    });
    int left = logs.size();
    for (const QFileInfo& log : qAsConst(logs)) {
        if (total + qMin(log.size(), MaximumLogBytes) > MaximumBytes)
            break;
        total += copyEnd(&scrub, log.filePath(), freeName(directory, scrub.scrubbed(log.fileName())));
        --left;
    }
    if (left > 0)
        qInfo() << left << "older logs are left out";
}

QStringList gatherForRating(const QString& bottleName, const QString& bottlePath, const QString& suggestions,
                            const QString& directory) {
    const QString settings = bottlePath + '/' + Settings;
    if (bottlePath.isEmpty()) {
        qWarning().noquote() << "bottlesPath for " + bottleName + "is empty";
        return {};
    }
    if (!QFileInfo(settings).isFile()) {
        qWarning().noquote() << "bottle.yml for " + bottleName + "is not exists";
        return {};
    }
    const LogScrub scrub;
    copyEnd(&scrub, settings, freeName(directory, Settings));
    QStringList files;
    if (SuggestionFile::isPrivate(suggestions)) {
        for (const QFileInfo& file : QDir(suggestions).entryInfoList(QDir::Files | QDir::NoSymLinks))
            files += file.filePath();
    }
    qint64 total = 0;
    for (const QString& file : qAsConst(files)) {
        if (total < MaximumBytes)
            total += copyEnd(nullptr, file, freeName(directory, QFileInfo(file).fileName()));
    }
    return files;
}

}  // namespace LogCollection
