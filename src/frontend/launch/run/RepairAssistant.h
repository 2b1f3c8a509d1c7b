#pragma once

#include <QFuture>
#include <QJsonObject>
#include <QObject>
#include <QPointer>
#include <QStringList>

#include "launch/repair/RepairOffer.h"

class ExeFileExecutor;
class LogsWidget;
class WineExeLaunchBanner;

/// Helps the user with a launch that has failed: tells what "Repair" is going to bring and why a component
/// could not be had, lets them try again or choose the installer's file by hand, and makes the report that
/// they may pass on. Owned by an ExeFileRunner, whose banner and log it writes to. Asks the service without
/// waiting.
class RepairAssistant : public QObject {
    Q_OBJECT
public:
    RepairAssistant(WineExeLaunchBanner* banner, LogsWidget* logs, QObject* parent);

    /// Follows a launch in the bottle.
    void follow(ExeFileExecutor* executor, const QString& bottle);

    /// Offers in the banner of a failed launch to try again or to choose a file, and explains "Repair" where
    /// `canFix` says that it is on offer.
    void showWays(bool canFix);

    /// The components that could not be installed by the last repair; a Wine is none of them.
    QStringList failedComponents() const;

    QString report(const QString& appName) const;

Q_SIGNALS:
    /// What has failed is to be tried once more.
    void retry();

private:
    struct Failure {
        QString component;
        QString reason;
    };

    void tellFailures();
    void askAboutOffer();
    void tellOffer(const RepairOffer& offer);
    void askAboutFailed();
    void askForFacts();
    void chooseFile();
    void take(const QString& path, int index, const QString& firstReason);
    void refuse(const QString& reason);

    WineExeLaunchBanner* m_banner;
    LogsWidget* m_logs;
    QPointer<ExeFileExecutor> m_executor;
    QString m_bottle;
    QVector<Failure> m_failures;            ///< of the repair that is under way or was the last
    QVector<Failure> m_allFailures;         ///< of the whole launch
    QVector<OfferedComponent> m_choosable;  ///< those of m_failures that have files to choose
    int m_round = 0;                        ///< counts repairs, so that late answers are dropped
    QString m_runner;
    QString m_wine;
    QFuture<QJsonObject> m_machine;
};
