#include "launch/winelog/DllTable.h"

#include <QDebug>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>

#include "core/base/Paths.h"

void DllTable::load() {
    static const QString path = Paths::dataFile("dlls_search.json");
    if (m_table.isEmpty()) {
        QFile file(path);
        if (file.open(QIODevice::ReadOnly))
            m_table = QJsonDocument::fromJson(file.readAll()).object();
    }
}

QString DllTable::componentFor(const QString& key) {
    load();
    qInfo() << "missing? " << key;
    const QString component = m_table.value(key).toArray().at(0).toString();
    qInfo() << "fix: install components -->" << component;
    return component;
}
