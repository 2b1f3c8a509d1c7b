#include "programs/AppSetups.h"

void AppSetups::add(const QString& appId) {
    ++m_appIds[appId];
    if (!m_hold)
        m_hold = PendingWork::instance()->hold();
}

void AppSetups::remove(const QString& appId) {
    const auto setups = m_appIds.find(appId);
    if (setups != m_appIds.end() && --*setups <= 0)
        m_appIds.erase(setups);
    if (m_appIds.isEmpty())
        m_hold.reset();
}
