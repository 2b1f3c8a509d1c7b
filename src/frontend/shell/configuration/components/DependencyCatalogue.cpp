#include "shell/configuration/components/DependencyCatalogue.h"

#include <QDebug>
#include <QFile>
#include <QHash>
#include <QJsonArray>
#include <QJsonDocument>
#include <QLocale>

#include "core/base/Paths.h"
#include "fenk/system/RegularFile.h"

namespace {

constexpr qint64 MaximumBytes = 4 * 1024 * 1024;  // the service reads no larger one

QStringList texts(const QJsonValue& array) {
    QStringList result;
    for (const QJsonValue& value : array.toArray())
        result += value.toString();
    result.removeAll({});
    return result;
}

QJsonObject objectIn(const QString& path) {
    if (!QFile::exists(path))
        return {};
    QJsonParseError error;
    const QByteArray text = Fenk::RegularFile::read(path, MaximumBytes).value_or(QByteArray());
    const QJsonDocument document = QJsonDocument::fromJson(text, &error);
    if (!document.isObject())
        qWarning().noquote() << path << "cannot be used:" << error.errorString();
    return document.object();
}

}  // namespace

QString DependencyEntry::searchText() const {
    QStringList all{name, description, dlls.join(' ')};
    if (!localDescription.isEmpty())
        all += localDescription;
    return all.join(' ');
}

QString DependencyEntry::shownDescription() const {
    return localDescription.isEmpty() ? description : localDescription;
}

QVector<DependencyEntry> DependencyCatalogue::merge(const QJsonObject& dependencies,
                                                    const QJsonObject& dllsSearch) {
    QVector<DependencyEntry> entries;
    QHash<QString, int> rows;
    for (auto it = dependencies.begin(); it != dependencies.end(); ++it) {
        const QJsonObject entry = it.value().toObject();
        if (it.key().isEmpty() || entry.isEmpty())
            continue;
        rows.insert(it.key(), entries.size());
        entries.append({it.key(), entry["Description"].toString(),
                        entry["Description_" + QLocale().name()].toString(), texts(entry["dlls"]),
                        texts(entry["needs"])});
    }
    for (auto it = dllsSearch.begin(); it != dllsSearch.end(); ++it) {
        for (const QString& name : texts(it.value())) {
            const int row = rows.value(name, -1);
            if (row >= 0 && !entries[row].dlls.contains(it.key()))
                entries[row].dlls += it.key();
        }
    }
    return entries;
}

QVector<DependencyEntry> DependencyCatalogue::read() {
    const QString file = "dependency.json";
    QJsonObject dependencies = objectIn(Paths::dataFile(file));
    const QJsonObject own = objectIn(Paths::bottlesDataDir() + '/' + file);
    for (auto it = own.begin(); it != own.end(); ++it)
        dependencies.insert(it.key(), it.value());
    return merge(dependencies, objectIn(Paths::dataFile("dlls_search.json")));
}
