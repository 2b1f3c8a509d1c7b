#include "backend/FileInfoCache.h"

#include <QDebug>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QMutex>
#include <QSaveFile>

#include "fenk/system/RegularFile.h"

namespace {
// Programs of the bottle can write here as well. A record takes a few kilobytes.
constexpr qint64 MaximumBytes = 32 * 1024 * 1024;
QMutex changes;
}  // namespace

std::optional<QJsonObject> FileInfoCache::load() const {
    QFile file(filePath());
    const QFileInfo info(file);
    if (!info.exists() && !info.isSymLink())
        return QJsonObject();
    if (!Fenk::RegularFile::open(file, filePath()) || file.size() > MaximumBytes) {
        qWarning().noquote() << "can't read" << filePath() << file.errorString();
        return std::nullopt;
    }
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(file.readAll(), &error);
    if (!document.isObject())
        qWarning().noquote() << "not a JSON object:" << filePath() << error.errorString();
    return document.object();
}

QJsonObject FileInfoCache::read() const {
    return load().value_or(QJsonObject());
}

bool FileInfoCache::write(const QJsonObject& all) const {
    QSaveFile file(filePath());
    const QByteArray text = QJsonDocument(all).toJson(QJsonDocument::Compact);
    if (file.open(QIODevice::WriteOnly) && file.write(text) == text.size() && file.commit())
        return true;
    qWarning().noquote() << "can't write" << filePath() << file.errorString();
    return false;
}

std::optional<FileInfoCache::Entry> FileInfoCache::find(const QString& programId) const {
    const QJsonValue value = read().value(programId);
    if (!value.isObject())
        return std::nullopt;
    const QJsonObject object = value.toObject();
    return Entry{object.value("exename").toString(), object.value("fileinfo_64").toString(),
                 object.value("successed").toBool()};
}

bool FileInfoCache::setEntry(const QString& programId, const Entry& entry) const {
    const QMutexLocker lock(&changes);
    std::optional<QJsonObject> all = load();
    if (!all)
        return false;
    all->insert(programId, QJsonObject{{"exename", entry.exeName},
                                       {"fileinfo_64", entry.fileInfo64},
                                       {"successed", entry.successed}});
    return write(*all);
}

bool FileInfoCache::remove(const QString& programId) const {
    const QMutexLocker lock(&changes);
    std::optional<QJsonObject> all = load();
    if (!all)
        return false;
    all->remove(programId);
    return write(*all);
}
