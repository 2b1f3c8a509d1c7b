#include "bottleservice/desktop/MadeFiles.h"

#include <QCryptographicHash>
#include <QDebug>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>

#include "bottleservice/bottles/AtomicFile.h"

namespace {

constexpr qint64 MaximumBytes = 16 * 1024 * 1024;
constexpr int TagCharacters = 12;

int removeAll(const QString& bottle, const QJsonArray& paths) {
    int removed = 0;
    for (const QJsonValue& path : paths) {
        const QFileInfo file(path.toString());
        if (file.isSymLink() || !file.isFile() || !file.fileName().startsWith(MadeFiles::prefixOf(bottle)))
            continue;
        if (QFile::remove(file.filePath()))
            ++removed;
        else
            qWarning() << "cannot remove" << file.filePath();
    }
    return removed;
}

}  // namespace

QString MadeFiles::prefixOf(const QString& bottle) {
    const QByteArray hash = QCryptographicHash::hash(bottle.toUtf8(), QCryptographicHash::Sha256).toHex();
    return "cellarix-" + QString::fromLatin1(hash.left(TagCharacters)) + '-';
}

bool MadeFiles::make(const QString& bottle, const QString& owner, const QString& path,
                     const QByteArray& content, bool isExecutable, QString* error) {
    Q_ASSERT(QFileInfo(path).fileName().startsWith(prefixOf(bottle)));
    QJsonObject record = load();
    QJsonObject owners = record[bottle].toObject();
    QJsonArray paths = owners[owner].toArray();
    if (!paths.contains(path)) {
        paths.append(path);
        owners.insert(owner, paths);
        record.insert(bottle, owners);
        if (!save(record, error))
            return false;
    }
    if (!QDir().mkpath(QFileInfo(path).path())) {
        *error = QString("Cannot make the directory of %1.").arg(path);
        return false;
    }
    if (!AtomicFile::replace(path, content, error))
        return false;
    if (isExecutable)
        QFile::setPermissions(path, QFile::permissions(path) | QFile::ExeOwner | QFile::ExeUser);
    return true;
}

int MadeFiles::undo(const QString& bottle, const QString& owner) {
    QJsonObject record = load();
    QJsonObject owners = record[bottle].toObject();
    const int removed = removeAll(bottle, owners.take(owner).toArray());
    if (owners.isEmpty())
        record.remove(bottle);
    else
        record.insert(bottle, owners);
    QString error;
    if (!save(record, &error))
        qWarning() << error;
    return removed;
}

int MadeFiles::undo(const QString& bottle) {
    int removed = 0;
    for (const QString& owner : load()[bottle].toObject().keys())
        removed += undo(bottle, owner);
    return removed;
}

bool MadeFiles::has(const QString& bottle, const QString& owner) const {
    return load()[bottle].toObject().contains(owner);
}

QJsonObject MadeFiles::load() const {
    QFile file(m_file);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return QJsonDocument::fromJson(file.read(MaximumBytes)).object();
}

bool MadeFiles::save(const QJsonObject& record, QString* error) const {
    if (record == load())
        return true;
    return AtomicFile::replace(m_file, QJsonDocument(record).toJson(), error);
}
