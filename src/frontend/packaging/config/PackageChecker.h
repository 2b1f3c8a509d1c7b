#pragma once

#include <QObject>

#include "packaging/config/PackageEntry.h"

/// The programs of a bottle and how each goes into the package. Reads the bottle's configuration from the
/// service and pkgcfg/pkgsrc.json; save() writes the selected programs back. Lives in the GUI thread; paths
/// are looked up on the disk.
class PackageChecker : public QObject {
    Q_OBJECT

public:
    explicit PackageChecker(QObject* parent = nullptr) : QObject(parent) {}

    /// Asks the service without waiting; update() follows for each program. Programs of the file that the
    /// bottle does not have any more are left out.
    void load(const QString& bottleName);
    /// The answer to load().
    void take(const QString& bottleName, const QJsonObject& bottle);
    /// Returns whether the file was written.
    bool save() const;

    void select(const QString& id);
    void unselect(const QString& id);
    void setDirectory(const QString& id, const QString& directory);
    void setOnlyCopyExe(const QString& id);

    QString bottleName() const { return m_bottleName; }
    QString bottleDir() const { return m_bottleDir; }
    const PackageEntries& entries() const { return m_entries; }
    int selectedCount() const;

Q_SIGNALS:
    /// An entry has changed.
    void update(const QString& id);

private:
    void addPrograms(const QJsonObject& programs);
    void readFile();
    void refresh(const QString& id);
    bool isInBottle(const PackageEntry& entry) const;
    PackageEntry* changeable(const QString& id);

    QString m_bottleName;
    QString m_bottleDir;
    PackageEntries m_entries;
};
