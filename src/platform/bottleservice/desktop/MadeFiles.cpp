#include "bottleservice/desktop/MadeFiles.h"

#include <QCryptographicHash>
#include <QDebug>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QSet>

#include "bottleservice/files/AtomicFile.h"
#include "fenk/system/RegularFile.h"

namespace {

constexpr qint64 MaximumBytes = 16 * 1024 * 1024;
constexpr int TagCharacters = 12;

bool isOwn(const QString& bottle, const QString& path) {
    const QFileInfo file(path);
    return file.isAbsolute() && QDir::cleanPath(path) == path &&
           file.fileName().startsWith(MadeFiles::prefixOf(bottle));
}

QStringList pathsOf(const QJsonObject& record, const QString& bottle, const QString& owner) {
    QStringList paths;
    for (const QJsonValue& path : record[bottle].toObject()[owner].toArray())
        paths += path.toString();
    return paths;
}

/// Returns the paths that could not be removed.
QStringList remove(const QString& bottle, const QStringList& paths) {
    QStringList left;
    for (const QString& path : paths) {
        const QFileInfo file(path);
        if (file.isSymLink() || !file.isFile() || !isOwn(bottle, path) || QFile::remove(path))
            continue;
        qWarning() << "cannot remove" << path;
        left += path;
    }
    return left;
}

}  // namespace

QString MadeFiles::prefixOf(const QString& bottle) {
    const QByteArray hash = QCryptographicHash::hash(bottle.toUtf8(), QCryptographicHash::Sha256).toHex();
    return "cellarix-" + QString::fromLatin1(hash.left(TagCharacters)) + '-';
}

bool MadeFiles::make(const QString& bottle, const QString& owner, const Contents& files, bool isExecutable,
                     QString* error) {
    const QStringList before = pathsOf(load().value_or(QJsonObject()), bottle, owner);
    QStringList all = before + files.keys();
    all.removeDuplicates();
    if (!record(bottle, owner, all, error))
        return false;
    for (auto file = files.begin(); file != files.end(); ++file) {
        if (!isOwn(bottle, file.key()) || !QDir().mkpath(QFileInfo(file.key()).path())) {
            *error = QString("Cannot make the directory of %1.").arg(file.key());
            return false;
        }
        if (!AtomicFile::replace(file.key(), file.value(), error, AtomicFile::Safety::Quick))
            return false;
        if (isExecutable)
            QFile::setPermissions(file.key(),
                                  QFile::permissions(file.key()) | QFile::ExeOwner | QFile::ExeUser);
    }
    QStringList outdated;
    for (const QString& path : before) {
        if (!files.contains(path))
            outdated += path;
    }
    return record(bottle, owner, files.keys() + remove(bottle, outdated), error);
}

void MadeFiles::undo(const QString& bottle, const QString& owner) {
    const auto known = load();
    QString error;
    if (!known || !record(bottle, owner, remove(bottle, pathsOf(*known, bottle, owner)), &error))
        qWarning() << "files that were made for" << owner << "stay recorded" << error;
}

void MadeFiles::undo(const QString& bottle) {
    for (const QString& owner : load().value_or(QJsonObject())[bottle].toObject().keys())
        undo(bottle, owner);
}

QStringList MadeFiles::existing(const QString& bottle, const QString& owner) const {
    QStringList paths;
    for (const QString& path : pathsOf(load().value_or(QJsonObject()), bottle, owner)) {
        if (QFileInfo::exists(path))
            paths += path;
    }
    return paths;
}

void MadeFiles::removeUnfinished() const {
    QSet<QString> directories;
    const QJsonObject all = load().value_or(QJsonObject());
    for (const QString& bottle : all.keys()) {
        for (const QString& owner : all[bottle].toObject().keys()) {
            for (const QString& path : pathsOf(all, bottle, owner))
                directories += QFileInfo(path).path();
        }
    }
    for (const QString& directory : qAsConst(directories)) {
        for (const QString& file : AtomicFile::leftovers(directory)) {
            qWarning() << "an earlier run of the service was interrupted; removing what it left:" << file;
            QFile::remove(file);
        }
    }
}

std::optional<QJsonObject> MadeFiles::load() const {
    if (!QFileInfo::exists(m_file))
        return QJsonObject();
    const auto text = Fenk::RegularFile::read(m_file, MaximumBytes);
    if (!text)
        return std::nullopt;
    const QJsonDocument document = QJsonDocument::fromJson(*text);
    if (document.isObject())
        return document.object();
    const QString aside = m_file + ".unreadable";
    qWarning() << m_file << "makes no sense and is set aside as" << aside;
    QFile::remove(aside);
    QFile::rename(m_file, aside);
    return QJsonObject();
}

bool MadeFiles::record(const QString& bottle, const QString& owner, const QStringList& paths,
                       QString* error) const {
    const auto known = load();
    if (!known) {
        *error = QString("%1 cannot be read.").arg(m_file);
        return false;
    }
    QJsonObject all = *known;
    QJsonObject owners = all[bottle].toObject();
    owners.remove(owner);
    if (!paths.isEmpty())
        owners.insert(owner, QJsonArray::fromStringList(paths));
    all.remove(bottle);
    if (!owners.isEmpty())
        all.insert(bottle, owners);
    return all == *known || AtomicFile::replace(m_file, QJsonDocument(all).toJson(), error);
}
