#pragma once

#include <QJsonObject>
#include <QString>
#include <QStringList>

class Sources;

/// The components of this machine, each a directory below the data directory: Wines in "runners", versions of
/// DXVK and VKD3D in "dxvk" and "vkd3d". A kind is one of "runner", "dxvk", "vkd3d".
class ComponentStore {
public:
    static const QStringList& kinds();

    explicit ComponentStore(const QString& dataDir) : m_dataDir(dataDir) {}

    QString directoryOf(const QString& kind) const;
    QString pathOf(const QString& kind, const QString& name) const;
    QStringList installed(const QString& kind) const;
    bool isInstalled(const QString& kind, const QString& name) const;

    /// {kind: {"installed": [...], "supported": [...]}}; supported are the components that can be fetched.
    QJsonObject catalogue(const Sources& sources) const;

    /// Returns why an unpacked directory is no component of that kind, empty if it is one.
    static QString fault(const QString& kind, const QString& directory);

private:
    QString m_dataDir;
};
