#pragma once

#include <QHash>
#include <QObject>
#include <QStringList>

#include "fenk/system/Singleton.h"

/// Why the last start of a stored program failed.
struct FailedStart {
    QString reason;          ///< translated; never empty
    QStringList components;  ///< missing components according to the log; the user has not been asked

    bool operator==(const FailedStart& other) const {
        return reason == other.reason && components == other.components;
    }
};

/// The stored programs whose last start failed, until a start succeeds or the program is removed; stored in a
/// file beside the other records. Lives in the GUI thread; the file is small and written synchronously. An
/// unreadable or unwritable file is logged; an unreadable one counts as empty.
class FailedStarts : public QObject, public Fenk::Singleton<FailedStarts> {
    Q_OBJECT
    friend class Fenk::Singleton<FailedStarts>;

public:
    void mark(const QString& bottle, const QString& uuid, const FailedStart& start);
    void clear(const QString& bottle, const QString& uuid);
    /// Calls mark(), or clear() if `start` has no reason, which means success.
    void record(const QString& bottle, const QString& uuid, const FailedStart& start);
    void clearBottle(const QString& bottle);
    /// Null if the last start did not fail.
    const FailedStart* find(const QString& bottle, const QString& uuid);

Q_SIGNALS:
    void changed(const QString& bottle, const QString& uuid);

private:
    using Key = QPair<QString, QString>;

    FailedStarts() = default;
    QHash<Key, FailedStart>& starts();
    void read();
    void write() const;

    QString m_file;  ///< empty until the file has been read
    QHash<Key, FailedStart> m_starts;
};
