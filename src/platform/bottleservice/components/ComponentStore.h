#pragma once

#include <QJsonObject>
#include <QString>
#include <QStringList>

class Sources;

/// The components of this machine that bottles choose from, each a directory: Wines below "runners", versions
/// of DXVK and VKD3D below "dxvk" and "vkd3d" of the data directory. A kind is one of "runner", "dxvk",
/// "vkd3d".
class ComponentStore {
public:
    static const QStringList& kinds();

    explicit ComponentStore(const QString& dataDir) : m_dataDir(dataDir) {}

    QString directoryOf(const QString& kind) const;
    QString pathOf(const QString& kind, const QString& name) const;
    QStringList installed(const QString& kind) const;
    bool isInstalled(const QString& kind, const QString& name) const;

    /// {kind: {"installed": [...], "supported": [...]}}; supported is what sources can bring.
    QJsonObject catalogue(const Sources& sources) const;

    /// Empty, or why an unpacked directory is no component of that kind.
    static QString fault(const QString& kind, const QString& directory);

private:
    QString m_dataDir;
};
