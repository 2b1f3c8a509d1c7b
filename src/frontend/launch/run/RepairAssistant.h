#pragma once

#include <QFuture>
#include <QJsonObject>
#include <QObject>
#include <QPointer>
#include <QStringList>

#include "launch/repair/RepairOffer.h"

class ExeFileExecutor;
class LaunchView;
class WineExeLaunchBanner;

/// The repairs of a failed launch as the user sees them: explains in the banner and the log what "Repair"
/// would install and why a component could not be installed, runs the repair that the user asks for, lets the
/// user try again or choose an installer's file, and makes the problem report. Owned by an ExeFileRunner; GUI
/// thread. Asks the service without waiting; without an answer the explanation is missing.
class RepairAssistant : public QObject {
    Q_OBJECT
public:
    RepairAssistant(LaunchView* view, QObject* parent);

    /// From now on repairs are those of this launch.
    void follow(ExeFileExecutor* executor, const QString& bottle);
    /// The launch is over: no further repair starts.
    void stop();

    /// After a failure: explains the repair when `canFix` says that one is on offer, otherwise offers to try
    /// again what could not be installed.
    void showOptions(bool canFix);

    /// Offers a repair that was asked for before any launch.
    void showFixup(const QStringList& components);

    QString report(const QString& appName) const;

Q_SIGNALS:
    /// The user has asked for a repair, which starts now.
    void repairing();

private:
    struct Failure {
        QString component;
        QString reason;
    };

    void repair();
    void retry();
    /// What the last repair could not install, without runners.
    QStringList failedComponents() const;
    void showFailures();
    void describeOffer();
    void showOffer(const RepairOffer& offer);
    void describeFailed();
    void fetchFacts();
    void chooseFile();
    void submitFile(const QString& path, int index, const QString& firstReason);
    void showRefusal(const QString& reason);

    LaunchView* m_view;
    WineExeLaunchBanner* m_banner;
    QPointer<ExeFileExecutor> m_executor;
    QString m_bottle;
    QVector<Failure> m_failures;            ///< of the running repair, or of the last one
    QVector<Failure> m_allFailures;         ///< of the whole launch
    QVector<OfferedComponent> m_choosable;  ///< those of m_failures that have files to choose
    int m_round = 0;                        ///< counts repairs: answers for an older one are dropped
    QString m_runner;
    QString m_wine;
    QFuture<QJsonObject> m_machine;
};
