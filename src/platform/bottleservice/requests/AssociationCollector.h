#pragma once

#include <QJsonObject>
#include <QObject>
#include <QSet>
#include <QThreadPool>
#include <atomic>

#include "bottleservice/bottles/BottleStore.h"

/// Reads in a thread of its own which file types the programs of bottles have registered, and extracts their
/// icons: one bottle after the other, beside the bottles' queues, for at most a minute each. Owned by
/// DesktopRequests; lives in the main thread.
class AssociationCollector : public QObject {
    Q_OBJECT

public:
    AssociationCollector(const BottleStore& store, const QString& iconScript, QObject* parent = nullptr);
    ~AssociationCollector() override;

    /// Reads them now, and again when Wine has written its registry to the disk.
    void collect(const QString& bottle);

    bool isIdle() const { return m_worker.activeThreadCount() == 0; }

Q_SIGNALS:
    void collected(const QString& bottle, const QJsonObject& associations);

private:
    void collectNow(const QString& bottle);

    BottleStore m_store;
    QString m_iconScript;
    QSet<QString> m_waiting;
    std::atomic_bool m_cancelled{false};
    QThreadPool m_worker;
};
