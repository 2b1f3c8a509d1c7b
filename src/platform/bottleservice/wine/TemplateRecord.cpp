#include "bottleservice/wine/TemplateRecord.h"

#include <QDebug>
#include <QDir>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>

#include "bottleservice/bottles/BottleName.h"
#include "bottleservice/files/AtomicFile.h"
#include "bottleservice/files/WorkingDirectory.h"
#include "bottleservice/wine/PrefixBuilder.h"
#include "bottleservice/wine/Runners.h"
#include "bottleservice/wine/Templates.h"
#include "fenk/system/RegularFile.h"

namespace {

constexpr qint64 MaximumBytes = 1024 * 1024;

QString fileOf(const QString& dataDir) {
    return dataDir + "/templates.json";
}

QJsonObject load(const QString& dataDir) {
    return QJsonDocument::fromJson(
               Fenk::RegularFile::read(fileOf(dataDir), MaximumBytes).value_or(QByteArray()))
        .object();
}

}  // namespace

namespace TemplateRecord {

void note(const QString& dataDir, const QStringList& runners, const QString& key) {
    const QJsonObject before = load(dataDir);
    QJsonObject record = before;
    for (const QString& runner : runners)
        record.insert(runner, key);
    QString error;
    if (record != before && !AtomicFile::replace(fileOf(dataDir), QJsonDocument(record).toJson(), &error))
        qWarning() << error;
}

bool isOutdated(const QString& dataDir) {
    const QJsonObject record = load(dataDir);
    const Runners runners(dataDir);
    for (auto it = record.begin(); it != record.end(); ++it) {
        const auto runner = runners.find(it.key());
        if (!runner)
            continue;
        const QString key = Templates::keyOf(*runner);
        const QString path = dataDir + "/templates/" + key;
        if (it.value().toString() != key ||
            (QFileInfo::exists(path) && !PrefixBuilder::check(path).isEmpty()))
            return true;
    }
    return false;
}

bool hasUnfinished(const QString& dataDir) {
    return !QDir(dataDir + "/templates")
                .entryList({QString(WorkingDirectory::CreatingPrefix) + '*'},
                           QDir::Dirs | QDir::Hidden | QDir::NoSymLinks)
                .isEmpty();
}

}  // namespace TemplateRecord
