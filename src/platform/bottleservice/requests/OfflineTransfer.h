#pragma once

#include <QJsonObject>
#include <QMap>
#include <QObject>
#include <QStringList>
#include <atomic>
#include <memory>

#include "bottleservice/result/Answer.h"

/// An export or an import of components that is under way or has ended: the state of each component, as
/// clients see it. A state is {"status": "downloading", "running", "ok" or "failed"}, with "progress" (a
/// text) while downloading, and with "error", "reasons" and perhaps "busy" when it has failed (see
/// com.lumora.Manager.OfflineDependency.xml). Owned by OfflineRequests; lives in the main thread.
class OfflineTransfer : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;
    ~OfflineTransfer() override { *m_cancelled = true; }

    virtual void start() = 0;
    /// What is not done fails.
    virtual void cancel() { *m_cancelled = true; }

    /// Every component has succeeded or failed.
    bool isDone() const { return m_done; }
    QJsonObject states() const { return m_states; }

Q_SIGNALS:
    void changed(const QString& component, const QJsonObject& state);

protected:
    void setDownloading(const QString& component, const QString& progress);
    void setRunning(const QString& component);
    void setResult(const QString& component, const Answer& result);
    void setFailed(const QString& component, const Reason& reason);
    bool isCancelled() const { return *m_cancelled; }
    std::shared_ptr<std::atomic_bool> cancelled() const { return m_cancelled; }
    void finish() { m_done = true; }

private:
    void set(const QString& component, const QJsonObject& state);

    QJsonObject m_states;
    bool m_done = false;
    std::shared_ptr<std::atomic_bool> m_cancelled = std::make_shared<std::atomic_bool>(false);
};
