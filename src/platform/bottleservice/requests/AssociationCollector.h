#pragma once

#include <QJsonObject>
#include <QObject>
#include <QSet>
#include <QThreadPool>
#include <atomic>

#include "bottleservice/bottles/BottleStore.h"

/// Reads in the background what the programs of bottles have registered, and takes the icons out of them: one
/// bottle after the other, beside their queues, in at most a minute each.
class AssociationCollector : public QObject {
    Q_OBJECT

public:
    AssociationCollector(const BottleStore& store, const QString& iconScript, QObject* parent = nullptr);
    ~AssociationCollector() override;

    /// Now, and again when Wine has written its registry to the disk.
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
