#pragma once

#include <QHash>
#include <QObject>
#include <QPointer>

#include "bottleservice/result/Answer.h"

class BottleEngine;
class InstallJob;

/// The requests about bottles that have lost files of Wine.
class BottleRepairRequests : public QObject {
    Q_OBJECT

public:
    explicit BottleRepairRequests(BottleEngine* engine, QObject* parent = nullptr);

    /// {"count", "files"}: what the bottle has lost of its template. Changes nothing.
    void damage(const QString& bottle, const Reply& reply);
    /// {"ok", "mended"}, or {"ok", "error", "busy"} with the names of the programs that run in the bottle.
    void renewBottle(const QString& bottle, const Reply& reply);
    /// Rolls back what is under way; it then answers with an error.
    void cancelRenewal(const QString& bottle, const Reply& reply);
    void cancelAll(const QString& bottle);

private:
    BottleEngine* m_engine;
    QHash<QString, QVector<QPointer<InstallJob>>> m_renewals;  ///< by bottle; some may have ended
};
