#include "programs/AppSetups.h"

void AppSetups::add(const QString& appId) {
    m_appIds.insert(appId);
    if (!m_hold)
        m_hold = PendingWork::instance()->hold();
}

void AppSetups::remove(const QString& appId) {
    m_appIds.remove(appId);
    if (m_appIds.isEmpty())
        m_hold.reset();
}
