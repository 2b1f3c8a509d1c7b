#pragma once

#include <QObject>
#include <QQueue>
#include <functional>

#include "packaging/config/PackageEntry.h"

/// The programs of a bottle and how each goes into the package. Reads the bottle's configuration from the
/// service and pkgcfg/pkgsrc.json; save() writes the selected programs back. Lives in the GUI thread. Paths
/// are looked up on the disk by another thread, so that every change is done later, one after the other, in
/// the order of the calls.
class PackageChecker : public QObject {
    Q_OBJECT

public:
    enum class State { Loading, Missing, Ready };

    explicit PackageChecker(QObject* parent = nullptr) : QObject(parent) {}

    /// Asks the service; update() follows for each program. Programs of the file that the bottle does not
    /// have any more are left out.
    void load(const QString& bottleName);
    /// The answer to load().
    void take(const QString& bottleName, const QJsonObject& bottle);
    /// Calls `then` with whether the file was written, unless context is destroyed first.
    void save(QObject* context, const std::function<void(bool)>& then);

    void select(const QString& id);
    void unselect(const QString& id);
    void setDirectory(const QString& id, const QString& directory);
    void setOnlyCopyExe(const QString& id);

    QString bottleName() const { return m_bottleName; }
    QString bottleDir() const { return m_bottleDir; }
    /// Missing: the service does not know the bottle, or could not be asked.
    State state() const { return m_state; }
    const PackageEntries& entries() const { return m_entries; }
    int selectedCount() const;
    /// The selected programs, as the file has them.
    static QJsonObject toJson(const PackageEntries& entries);

Q_SIGNALS:
    /// An entry has changed; with an empty id, the state of a table without entries.
    void update(const QString& id);

private:
    /// Runs in another thread. Returns the ids of the entries that it has changed.
    using Work = std::function<QStringList(PackageEntries* entries)>;
    struct Change {
        Work work;
        std::function<void()> then;
    };
    void enqueue(const Work& work, const std::function<void()>& then = {});
    void startNext();

    QString m_bottleName;
    QString m_bottleDir;
    State m_state = State::Loading;
    PackageEntries m_entries;
    QQueue<Change> m_changes;
    bool m_isWorking = false;
    int m_table = 0;  ///< counts the calls of take(), which drop what is being done for an older table
};
