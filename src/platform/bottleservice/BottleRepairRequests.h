#pragma once

#include <QHash>
#include <QObject>
#include <QPointer>

#include "bottleservice/Answer.h"

class BottleEngine;
class InstallJob;

/// The requests that repairs of launches make, beside components.
class BottleRepairRequests : public QObject {
    Q_OBJECT

public:
    BottleRepairRequests(BottleEngine* engine, const QString& catalogueDir, QObject* parent = nullptr);

    /// {"installed": [...], "supported": [...]}: the runners that run 32-bit programs on this machine, and
    /// those that would after they have been fetched.
    Answer runnersFor32Bit() const;
    /// {"count", "files"}: what the bottle has lost of its template. Changes nothing.
    void damage(const QString& bottle, const Reply& reply);
    /// {"ok", "mended"}, or {"ok", "error", "busy"} with the names of the programs that run in the bottle.
    void renewBottle(const QString& bottle, const Reply& reply);
    /// Rolls back what is under way; it then answers with an error.
    void cancelRenewal(const QString& bottle, const Reply& reply);
    void cancelAll(const QString& bottle);

private:
    BottleEngine* m_engine;
    QString m_catalogueDir;
    QHash<QString, QPointer<InstallJob>> m_renewals;
};
