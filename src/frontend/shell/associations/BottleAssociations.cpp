#include "shell/associations/BottleAssociations.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>

#include "core/base/Paths.h"
#include "fenk/system/RegularFile.h"
#include "fenk/system/SystemInfo.h"
#include "launch/open/FileAssociation.h"

namespace {

constexpr int LastVersionWithLinks = 22;
constexpr qint64 MaximumBytes = 16 * 1024 * 1024;
constexpr int LongestText = 256;

QString shown(const QJsonValue& text) {
    return text.toString().left(LongestText).simplified();
}

}  // namespace

QJsonObject BottleAssociations::read(const QString& bottlePath) {
    static const int version = Fenk::SystemInfo().majorVersion().toInt();
    return read(bottlePath, version);
}

QJsonObject BottleAssociations::read(const QString& bottlePath, int systemVersion) {
    QJsonObject all = FileAssociation::all(bottlePath);
    for (auto it = all.begin(); it != all.end();) {
        const QString mime = it.value().toObject().value("mime").toString();
        const bool isLink = mime.startsWith(QLatin1String("x-scheme-handler/"));
        it = isLink && systemVersion > LastVersionWithLinks ? all.erase(it) : it + 1;
    }
    return all;
}

QStringList BottleAssociations::exported(const QString& bottle) {
    QFile file;
    if (!Fenk::RegularFile::open(file, Paths::bottlesDataDir() + "/exported_associations.json"))
        return {};
    QStringList keys;
    const QJsonObject all = QJsonDocument::fromJson(file.read(MaximumBytes)).object();
    for (const QJsonValue& key : all.value(bottle).toArray())
        keys << key.toString();
    return keys;
}

QVector<BottleAssociations::Row> BottleAssociations::rows(const QJsonObject& associations,
                                                          const QStringList& exported) {
    QVector<Row> rows;
    for (auto it = associations.begin(); it != associations.end(); ++it) {
        const QJsonObject record = it.value().toObject();
        const QString friendlyName = shown(record.value("friendly_name"));
        rows.append({it.key(), friendlyName.isEmpty() ? shown(record.value("comment")) : friendlyName,
                     record.value("icon").toString(), exported.contains(it.key())});
    }
    return rows;
}
