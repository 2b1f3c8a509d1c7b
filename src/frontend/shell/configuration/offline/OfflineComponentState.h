#pragma once

#include <QCoreApplication>
#include <QJsonObject>

#include "backend/OfflineDependency.h"

/// How far an export or an import is with one component, as a row of the dialogs shows it.
struct OfflineComponentState {
    Q_DECLARE_TR_FUNCTIONS(OfflineComponentState)

public:
    enum Kind { Idle, Running, Done, Failed };

    Kind kind = Idle;
    QString text;    ///< for the row, in the user's language
    QString reason;  ///< of a failure, for people; may be empty

    /// From the service's object; Idle for one with an unknown status.
    static OfflineComponentState of(OfflineDependency::Transfer transfer, const QJsonObject& info);
    /// Before the service has said anything.
    static OfflineComponentState started(OfflineDependency::Transfer transfer);
    static OfflineComponentState failed(const QString& reason);
};
