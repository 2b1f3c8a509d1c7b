#include "bottleservice/components/ComponentStore.h"

#include <QDir>
#include <QJsonArray>

#include "bottleservice/components/Sources.h"
#include "bottleservice/wine/Runners.h"

const QStringList& ComponentStore::kinds() {
    static const QStringList kinds = {"runner", "dxvk", "vkd3d"};
    return kinds;
}

QString ComponentStore::directoryOf(const QString& kind) const {
    return m_dataDir + '/' + (kind == "runner" ? QString("runners") : kind);
}

QString ComponentStore::pathOf(const QString& kind, const QString& name) const {
    return directoryOf(kind) + '/' + name;
}

QStringList ComponentStore::installed(const QString& kind) const {
    if (kind == "runner")
        return Runners(m_dataDir).names();
    QStringList names;
    for (const QString& name : QDir(directoryOf(kind)).entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        if (fault(kind, pathOf(kind, name)).isEmpty())
            names += name;
    }
    return names;
}

bool ComponentStore::isInstalled(const QString& kind, const QString& name) const {
    return installed(kind).contains(name);
}

QJsonObject ComponentStore::catalogue(const Sources& sources) const {
    QJsonObject catalogue;
    for (const QString& kind : kinds())
        catalogue.insert(kind,
                         QJsonObject{{"installed", QJsonArray::fromStringList(installed(kind))},
                                     {"supported", QJsonArray::fromStringList(sources.components(kind))}});
    return catalogue;
}

QString ComponentStore::fault(const QString& kind, const QString& directory) {
    if (kind == "runner")
        return Runners::wineIn(directory).isEmpty() ? "It holds no Wine." : QString();
    for (const char* part : {"/x64", "/x32", "/x86"}) {
        if (!QDir(directory + part).entryList({"*.dll"}, QDir::Files).isEmpty())
            return {};
    }
    return "It holds no DLLs.";
}
