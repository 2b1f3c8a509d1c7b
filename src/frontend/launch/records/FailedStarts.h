#pragma once

#include <QHash>
#include <QObject>
#include <QStringList>

#include "fenk/system/Singleton.h"

/// Why the last start of a stored program has failed.
struct FailedStart {
    QString reason;          ///< for the user, never empty
    QStringList components;  ///< that would mend it, as far as the log has told; the user has not been asked

    bool operator==(const FailedStart& other) const {
        return reason == other.reason && components == other.components;
    }
};

/// The stored programs whose last start has failed, kept until the next good one, in a file beside the other
/// records. A program that is not there any more is forgotten at its removal. Lives in the GUI thread; the
/// file is small and written at once. A file that can't be read or written is logged, and counts as empty.
class FailedStarts : public QObject, public Fenk::Singleton<FailedStarts> {
    Q_OBJECT
    friend class Fenk::Singleton<FailedStarts>;

public:
    void mark(const QString& bottle, const QString& uuid, const FailedStart& start);
    void clear(const QString& bottle, const QString& uuid);
    /// Either of the two: a start without a reason was a good one.
    void record(const QString& bottle, const QString& uuid, const FailedStart& start);
    void clearBottle(const QString& bottle);
    /// Null for a program that has not failed.
    const FailedStart* find(const QString& bottle, const QString& uuid);

Q_SIGNALS:
    void changed(const QString& bottle, const QString& uuid);

private:
    using Key = QPair<QString, QString>;

    FailedStarts() = default;
    QHash<Key, FailedStart>& starts();
    void read();
    void write() const;

    QString m_file;  ///< empty until it has been read
    QHash<Key, FailedStart> m_starts;
};
