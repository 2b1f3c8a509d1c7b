#include "shell/configuration/tables/TableSync.h"

#include <QDebug>
#include <QPointer>

#include "backend/PendingWork.h"

TableSync::TableSync(const QString& method, QObject* parent) : QObject(parent), m_method(method) {}

bool TableSync::load() {
    m_isLoading = true;
    m_isStale = m_pending > 0;
    if (m_isStale)
        return false;
    m_list(this, [this, number = ++m_loads](const BusResult& result) {
        if (number == m_loads)
            onListed(result);
    });
    return true;
}

void TableSync::onListed(const BusResult& result) {
    if (m_isStale)
        return;
    m_isLoading = false;
    if (result.ok) {
        Q_EMIT listed(result.object());
        return;
    }
    qWarning().noquote().nospace() << m_method << " error: " << result.errorMessage;
    Q_EMIT failed(result.errorText());
}

void TableSync::change(const QString& name, const char* what, const Call& call, bool isIdle) {
    ++m_pending;
    m_isStale = m_isStale || m_isLoading;
    // Not of this object: the change goes on without the window.
    auto* context = PendingWork::instance();
    call(context, [sync = QPointer<TableSync>(this), hold = context->hold(), name, what,
                   isIdle](const BusResult& result) {
        if (!result.ok)
            qWarning().noquote() << what << name << "was not done:" << result.errorMessage;
        if (sync)
            sync->onChanged(name, result, isIdle);
    });
}

void TableSync::onChanged(const QString& name, const BusResult& result, bool isIdle) {
    --m_pending;
    if (!result.ok && !result.timedOut && !isIdle) {
        m_isStale = true;
        if (!m_hasRefused)
            Q_EMIT refused(tr("%1 could not be changed: %2").arg(name, result.errorText()));
        m_hasRefused = true;
    }
    if (m_pending > 0)
        return;
    m_hasRefused = false;
    if (m_isStale)
        load();
}
