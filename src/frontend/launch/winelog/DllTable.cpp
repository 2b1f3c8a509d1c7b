#include "launch/winelog/DllTable.h"

#include <QDebug>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <mutex>

#include "core/base/Paths.h"

namespace {

QJsonObject loadedTable() {
    static const QString path = Paths::dataFile("dlls_search.json");
    static std::mutex mutex;
    static QJsonObject table;
    const std::lock_guard<std::mutex> lock(mutex);
    if (table.isEmpty()) {
        QFile file(path);
        if (file.open(QIODevice::ReadOnly))
            table = QJsonDocument::fromJson(file.readAll()).object();
    }
    return table;
}

}  // namespace

QString DllTable::componentFor(const QString& key) {
    const QJsonObject table = loadedTable();
    qInfo() << "missing? " << key;
    const QString component = table.value(key).toArray().at(0).toString();
    qInfo() << "fix: install components -->" << component;
    return component;
}
