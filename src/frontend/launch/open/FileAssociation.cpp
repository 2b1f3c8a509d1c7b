#include "launch/open/FileAssociation.h"

#include <QDebug>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>

#include "fenk/system/RegularFile.h"

namespace {

const char FileName[] = "/assosiate.json";
constexpr qint64 MaximumBytes = 16 * 1024 * 1024;

}  // namespace

QJsonObject FileAssociation::all(const QString& bottlePath) {
    const QString path = bottlePath + FileName;
    const QFileInfo info(path);
    if (bottlePath.isEmpty() || (!info.exists() && !info.isSymLink()))
        return {};
    QFile file;
    if (!Fenk::RegularFile::open(file, path) || file.size() > MaximumBytes) {
        qWarning().noquote() << "can't read" << path;
        return {};
    }
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(file.read(MaximumBytes), &error);
    if (!document.isObject())
        qWarning().noquote() << "not a JSON object:" << path << error.errorString();
    return document.object();
}

std::optional<FileAssociation> FileAssociation::find(const QString& bottlePath, const QString& key) {
    const QJsonObject known = all(bottlePath);
    if (!known.contains(key))
        return std::nullopt;
    const QJsonObject record = known.value(key).toObject();
    const FileAssociation found{record.value("progid").toString(), record.value("executable").toString(),
                                record.value("comment").toString(), record.value("friendly_name").toString(),
                                record.value("icon").toString()};
    if (found.progId.isEmpty()) {
        qWarning() << "no program is named for" << key << "in" << bottlePath;
        return std::nullopt;
    }
    return found;
}

QString FileAssociation::displayName() const {
    for (const QString& name : {comment.trimmed(), friendlyName.trimmed()}) {
        if (!name.isEmpty())
            return name;
    }
    return executable.split('\\').last();
}
