#pragma once

#include <QObject>
#include <QStringList>

#include "launch/MsgType.h"

class DependencySetupProgressEmitter;
class QJsonObject;

/// Installs components into one bottle, one after the other, and says in words how far it is. A component
/// that fails stops nothing and is not tried again. Idle until install(), busy until done(); a new install()
/// while busy abandons the old list. There is no time-out, but a service that can't be reached, refuses or
/// goes away has failed the component at hand. Where the service refuses because programs run in the bottle,
/// the queue stops with blocked() until retry() or cancel().
class DependencyInstallQueue : public QObject {
    Q_OBJECT
public:
    explicit DependencyInstallQueue(QObject* parent = nullptr);

    void install(const QString& bottleName, const QStringList& dependencies);
    /// Becomes idle without done(). What the service is installing is not cancelled by this.
    void cancel();
    /// Asks for the component at hand once more.
    void retry();

Q_SIGNALS:
    void done();
    void emitMsg(const QString& text, MsgType recordType = MsgLine);
    void emitStep(const QString& text, MsgType recordType = MsgLine);
    void blocked(const QStringList& programs);
    /// A component could not be installed; the queue goes on. The reason is for the user and may be empty.
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
    int m_attempt = 0;  ///< counts the requests, so that the late answer to one does not end another
};
