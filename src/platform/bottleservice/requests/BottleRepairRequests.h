#pragma once

#include <QHash>
#include <QObject>
#include <QPointer>

#include "bottleservice/result/Answer.h"

class BottleEngine;
class InstallJob;

/// The requests about bottles that have lost files of Wine. Owned by BottleService; lives in the main thread.
class BottleRepairRequests : public QObject {
    Q_OBJECT

public:
    explicit BottleRepairRequests(BottleEngine* engine, QObject* parent = nullptr);

    /// {"count", "files"}: the files that the bottle has lost (PrefixDamage). Changes nothing.
    void damage(const QString& bottle, const Reply& reply);
    /// {"ok", "mended"}, or {"ok", "error", "busy"} with the names of the programs that run in the bottle.
    void renewBottle(const QString& bottle, const Reply& reply);
    /// Rolls back running renewals of the bottle; they then answer with an error.
    void cancelRenewal(const QString& bottle, const Reply& reply);
    void cancelAll(const QString& bottle);

private:
    BottleEngine* m_engine;
    QHash<QString, QVector<QPointer<InstallJob>>> m_renewals;  ///< by bottle; some may have ended
};
