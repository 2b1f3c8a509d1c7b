#pragma once

#include <QHash>
#include <QObject>
#include <QPointer>
#include <QVector>

#include "bottleservice/result/Answer.h"
#include "manifest/Manifest.h"

class BottleEngine;
class CleanUpRequests;
class ComponentRequests;
class Downloads;
class SetupBottleJob;

/// The requests to set up bottles from manifests. The components of the machine that a manifest needs are
/// fetched first; the rest is done by one SetupBottleJob in the bottle's queue. Every setup() ends in exactly
/// one succeeded() or failed(), also one with an invalid argument; of a request that is repeated while it is
/// being carried out, both end in the same. Owned by BottleService; lives in the main thread.
class SetupRequests : public QObject {
    Q_OBJECT

public:
    SetupRequests(BottleEngine* engine, Downloads* downloads, ComponentRequests* components,
                  CleanUpRequests* cleanUps, const QString& catalogueDir, QObject* parent = nullptr);

    /// `manifest` is Base64. Answers at once; with Busy when the bottle is being set up from another
    /// manifest.
    void setup(const QString& bottle, const QString& manifest, const Reply& reply);
    /// For a setup() that did not get here: failed() follows, unless a set-up of the bottle is under way and
    /// has its own end.
    void refuse(const QString& bottle, const Answer& verdict);
    /// Answers at once; failed() follows at once where there was something to cancel. What the set-up has
    /// begun is undone afterwards, and the next request waits for that.
    void cancel(const QString& bottle, const Reply& reply);
    /// For a bottle that is being deleted.
    void cancelForDeletion(const QString& bottle);

    bool isIdle() const { return m_setups.isEmpty(); }
    /// Ends all downloads; the service ends.
    void close();

Q_SIGNALS:
    void succeeded(const QString& bottle);
    void failed(const QString& bottle, const Answer& result, bool isCancelled);
    /// English, one line each.
    void titleChanged(const QString& bottle, const QString& title);
    void described(const QString& bottle, const QString& text, int level);
    /// The step that begins, from 0; at the end the number of steps.
    void progressChanged(const QString& bottle, int step, int steps);

private:
    enum Level { ForLog, OfTheMoment };

    struct Component {
        QString kind;
        QString name;
    };
    struct Setup {
        int id = 0;    ///< since a cancelled job of the same bottle may still run
        QString text;  ///< as it was given
        Manifest manifest;
        QString runner;
        QVector<Component> components;  ///< that must be fetched, the one that is being fetched first
        int fetches = 0;                ///< how many of them there were
        bool isFetching = false;
        QPointer<SetupBottleJob> job;
        QString lastMoment;
    };

    Reason begin(const QString& bottle, const QString& text);
    QString otherRunner() const;
    QVector<Component> missingComponents(const Setup& setup) const;
    void next(const QString& bottle);
    void onFetched(const QString& kind, const QString& name, const Reason& reason);
    void enqueue(const QString& bottle);
    void end(const QString& bottle, const Answer& result, bool isCancelled = false);
    void stop(const QString& bottle);
    void tellStep(const QString& bottle, int step, const QString& title);
    void tellBytes(const QString& bottle, const QString& file, qint64 received, qint64 total);

    BottleEngine* m_engine;
    Downloads* m_downloads;
    ComponentRequests* m_components;
    CleanUpRequests* m_cleanUps;
    QString m_catalogueDir;
    QHash<QString, Setup> m_setups;  ///< by bottle
    int m_lastId = 0;
};
