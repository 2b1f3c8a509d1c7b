#include "bottleservice/requests/OfflineTransfer.h"

#include <QDebug>
#include <QJsonArray>

void OfflineTransfer::set(const QString& component, const QJsonObject& state) {
    if (m_states.value(component) == state)
        return;
    m_states.insert(component, state);
    Q_EMIT changed(component, state);
}

void OfflineTransfer::setDownloading(const QString& component, const QString& progress) {
    set(component, {{"status", "downloading"}, {"progress", progress}});
}

void OfflineTransfer::setRunning(const QString& component) {
    set(component, {{"status", "running"}});
}

void OfflineTransfer::setResult(const QString& component, const Answer& result) {
    QJsonObject state{{"status", result.isGood() ? "ok" : "failed"}};
    if (!result.isGood()) {
        qWarning() << "component" << component << "failed:" << result.reason.text();
        state.insert("error", result.reason.text());
        state.insert("reasons", result.reason.toJson());
    }
    if (result.fault == Answer::Fault::Busy)
        state.insert("busy", QJsonArray::fromStringList(result.running));
    set(component, state);
}

void OfflineTransfer::setFailed(const QString& component, const Reason& reason) {
    setResult(component, Answer::failure(Answer::Fault::Failed, reason));
}
