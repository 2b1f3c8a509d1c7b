#pragma once

#include <QSet>
#include <QString>

#include "backend/PendingWork.h"

/// The ids of the applications that are being set up. While there is one, the process does not end. Owned by
/// AppItemWidgetStateManager; GUI thread only.
class AppSetups {
public:
    void add(const QString& appId);
    void remove(const QString& appId);
    bool isEmpty() const { return m_appIds.isEmpty(); }
    bool contains(const QString& appId) const { return m_appIds.contains(appId); }

private:
    QSet<QString> m_appIds;
    PendingWork::Hold m_hold;
};
