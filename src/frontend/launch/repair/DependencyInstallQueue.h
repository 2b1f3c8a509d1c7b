#pragma once

#include <QObject>
#include <QStringList>

#include "launch/MsgType.h"

class DependencySetupProgressEmitter;
class QJsonObject;

/// Installs components into one bottle, one after the other, and reports progress as text. A component that
/// fails is not retried; the queue goes on with the next one. Idle until install(), busy until done(); a new
/// install() while busy abandons the old list. There is no time-out, but a component fails if the service
/// can't be reached, refuses or exits. If the service refuses because programs run in the bottle, the queue
/// stops with blocked() until retry() or cancel().
class DependencyInstallQueue : public QObject {
    Q_OBJECT
public:
    explicit DependencyInstallQueue(QObject* parent = nullptr);

    void install(const QString& bottleName, const QStringList& dependencies);
    /// Stops without done(). Does not cancel what the service is installing.
    void cancel();
    /// The component that the service was asked for; empty when idle.
    const QString& current() const { return m_currentDependency; }
    /// Requests the current component once more.
    void retry();

Q_SIGNALS:
    void done();
    void emitMsg(const QString& text, MsgType recordType = MsgLine);
    void emitStep(const QString& text, MsgType recordType = MsgLine);
    void blocked(const QStringList& programs);
    /// A component could not be installed; the queue goes on. `reason` is for the user and may be empty.
    void failed(const QString& dependency, const QString& reason);

public Q_SLOTS:
    void slotsDependsInstalled(const QString& bottles_name, const QString& dependency_name,
                               const QJsonObject& result);
    /// Sizes are bytes.
    void slotsDependsSetupProgress(const QString& bottles_name, const QString& dependency_name,
                                   uint received_size, uint total_size, const QString& status);

private:
    bool isCurrent(const QString& bottle, const QString& dependency) const;
    void installNext();
    void request();
    void failCurrent(const QString& why, const QJsonObject& result);
    void dropEmitter();
    void showPercent(int percent);

    DependencySetupProgressEmitter* m_progressEmitter = nullptr;
    QStringList m_pending;
    QString m_bottleName;
    QString m_currentDependency;
    bool m_isBlocked = false;
    int m_attempt = 0;  ///< number of the current request; answers to earlier ones are ignored
};
