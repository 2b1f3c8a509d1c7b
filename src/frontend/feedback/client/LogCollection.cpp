#include "feedback/client/LogCollection.h"

#include <QDebug>
#include <QDir>
#include <QStandardPaths>
#include <algorithm>

#include "backend/BottleLogs.h"
#include "core/base/LogScrub.h"
#include "core/base/Paths.h"
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

/// The end of a file, and whether something stands before it. A little more than what is kept of it.
QByteArray readEnd(QFile* file, bool* isCut) {
    const qint64 begin = qMax(qint64(0), file->size() - MaximumLogBytes - LongestPart);
    *isCut = begin > 0;
    file->seek(begin - begin % 2);  // a character of UTF-16 stays whole
    return file->read(MaximumLogBytes + LongestPart);
}

/// From the beginning of a line when one begins near. In any case without the first bytes: a name of which
/// only the end was read is not known.
QByteArray withoutBrokenPart(const QByteArray& bytes) {
    const int lineEnd = bytes.left(LongestPart).indexOf('\n');
    return bytes.mid(lineEnd < 0 ? LongestPart : lineEnd + 1);
}

/// Returns the number of bytes that were written: at most `room`.
qint64 copyEnd(const LogScrub& scrub, const QString& path, const QString& copy, qint64 room) {
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
    bool isCut = false;
    QByteArray bytes = scrub.scrubbed(readEnd(&source, &isCut));
    if (isCut)
        bytes = withoutBrokenPart(bytes);
    bytes = bytes.right(int(qMin(room, MaximumLogBytes)));
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
    qint64 total =
        copyEnd(scrub, sources.bottlePath + '/' + Settings, freeName(directory, Settings), MaximumBytes);
    QFileInfoList logs = logsIn(BottleLogs::directory(sources.bottlePath), "*") +
                         logsIn(sources.serviceDirectory, "*.log") +
                         logsIn(sources.applicationDirectory, OwnLog);
    std::stable_sort(logs.begin(), logs.end(), [](const QFileInfo& a, const QFileInfo& b) {
        return a.lastModified() > b.lastModified();
    });
    int copied = 0;
    for (const QFileInfo& log : qAsConst(logs)) {
        if (copied == MaximumFiles)
            break;
        if (total + qMin(log.size(), MaximumLogBytes) > MaximumBytes)
            continue;
        total += copyEnd(scrub, log.filePath(), freeName(directory, scrub.scrubbed(log.fileName())),
                         MaximumBytes - total);
        ++copied;
    }
    if (copied < logs.size())
        qInfo() << logs.size() - copied << "logs are left out";
}

void gatherConfiguration(const QString& bottleName, const QString& bottlePath, const QString& directory) {
    const QString settings = bottlePath + '/' + Settings;
    if (bottlePath.isEmpty())
        qWarning().noquote() << "bottlesPath for " + bottleName + "is empty";
    else if (!QFileInfo(settings).isFile())
        qWarning().noquote() << "bottle.yml for " + bottleName + "is not exists";
    else
        copyEnd(LogScrub(), settings, freeName(directory, Settings), MaximumLogBytes);
}

}  // namespace LogCollection
