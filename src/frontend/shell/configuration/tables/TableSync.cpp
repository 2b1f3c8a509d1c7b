#include "shell/configuration/tables/TableSync.h"

#include <QDBusServiceWatcher>
#include <QDebug>
#include <QPointer>

#include "backend/PendingWork.h"
#include "backend/ServiceLoss.h"
#include "backend/ServiceNames.h"

TableSync::TableSync(const QString& method, QObject* parent) : QObject(parent), m_method(method) {
    followService();
}

/// Asks a new service; what the old one had not done is lost.
void TableSync::followService() {
    whenServiceIsLost(this, [this] {
        if (m_loads > 0)
            load();
    });
    auto* arrival = new QDBusServiceWatcher(ServiceNames::Service, QDBusConnection::sessionBus(),
                                            QDBusServiceWatcher::WatchForRegistration, this);
    connect(arrival, &QDBusServiceWatcher::serviceRegistered, this, [this] {
        if (m_hasFailed)
            load();
    });
}

void TableSync::load() {
    m_isLoading = true;
    m_isStale = m_pending > 0;
    if (m_isStale)
        return;
    m_list(this, [this, number = ++m_loads](const BusResult& result) {
        if (number == m_loads)
            onListed(result);
    });
}

void TableSync::onListed(const BusResult& result) {
    if (m_isStale)
        return;
    m_isLoading = false;
    m_hasFailed = !result.ok;
    if (result.ok) {
        Q_EMIT listed(result.object());
        return;
    }
    qWarning().noquote().nospace() << m_method << " error: " << result.errorMessage;
    Q_EMIT failed();
}

void TableSync::change(const QString& what, const Call& call, bool isIdle) {
    ++m_pending;
    m_isStale = m_isStale || m_isLoading;
    // Not of this object: the change goes on without the window.
    auto* context = PendingWork::instance();
    call(context,
         [sync = QPointer<TableSync>(this), hold = context->hold(), what, isIdle](const BusResult& result) {
             if (!result.ok)
                 qWarning().noquote() << what << "was not done:" << result.errorMessage;
             if (sync)
                 sync->onChanged(result, isIdle);
         });
}

void TableSync::onChanged(const BusResult& result, bool isIdle) {
    --m_pending;
    if (!result.ok && !result.timedOut && !isIdle) {
        m_isStale = true;
        if (!m_hasRefused)
            Q_EMIT refused(result.errorText());
        m_hasRefused = true;
    }
    if (m_pending > 0)
        return;
    m_hasRefused = false;
    if (m_isStale)
        load();
}
