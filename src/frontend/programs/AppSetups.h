#pragma once

#include <QHash>
#include <QString>

#include "backend/PendingWork.h"

/// The ids of the applications that are being set up, as often as that is. While there is one, the process
/// does not end. Owned by AppItemWidgetStateManager; GUI thread only.
class AppSetups {
public:
    void add(const QString& appId);
    /// One of its set-ups.
    void remove(const QString& appId);
    bool isEmpty() const { return m_appIds.isEmpty(); }
    bool contains(const QString& appId) const { return m_appIds.contains(appId); }
    int count(const QString& appId) const { return m_appIds.value(appId); }

private:
    QHash<QString, int> m_appIds;
    PendingWork::Hold m_hold;
};
