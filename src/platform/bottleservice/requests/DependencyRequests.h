#pragma once

#include <QHash>
#include <QObject>
#include <QPointer>
#include <QQueue>

#include "bottleservice/components/InstallPlan.h"
#include "bottleservice/components/Sources.h"
#include "bottleservice/result/Answer.h"

class BottleEngine;
class Downloads;
class FileFetch;
class InstallDependencyJob;

/// The requests about what programs need in a bottle. The files of a recipe are fetched while the bottle can
/// be used and changed; only the installation itself has its turn in the bottle's queue. Installations into
/// one bottle are done one after the other.
class DependencyRequests : public QObject {
    Q_OBJECT

public:
    DependencyRequests(BottleEngine* engine, Downloads* downloads, const QString& catalogueDir,
                       QObject* parent = nullptr);

    /// Answers when it is known whether programs run in the bottle, which refuse it, or at once when others
    /// are before it. done() tells how it ended, also for what is refused, unless the name can be none.
    void install(const QString& bottle, const QString& dependency, const Reply& reply);
    /// The name of what is being installed, or empty.
    void installing(const QString& bottle, const Reply& reply);
    /// Gives up what is being installed and what waits behind it.
    void cancel(const QString& bottle, const Reply& reply);

    /// What the installation into the bottle would consist of; changes nothing.
    InstallPlan planOf(const QString& bottle, const QString& dependency) const;
    Sources sources() const;

    /// Ends all fetching; the service ends.
    void close();

    bool isIdle() const { return m_lines.isEmpty(); }

Q_SIGNALS:
    /// In bytes; total is 0 while it is not known.
    void progress(const QString& bottle, const QString& dependency, qint64 received, qint64 total);
    void described(const QString& bottle, const QString& dependency, const QString& text);
    void stepDone(const QString& bottle, const QString& dependency, int done, int total);
    /// Of two requests for the same component, of which the first was cancelled, only the second is told.
    void done(const QString& bottle, const QString& dependency, const Answer& result);

private:
    struct Install {
        QString dependency;
        QPointer<FileFetch> fetch;
        QPointer<InstallDependencyJob> job;
        bool cancelled = false;
    };

    void startFirst(const QString& bottle, const Reply& reply);
    void planFirst(const QString& bottle);
    void fetch(const QString& bottle, const QVector<Recipe>& recipes);
    void enqueue(const QString& bottle, const QVector<Recipe>& recipes);
    void firstEnded(const QString& bottle, const Answer& result);

    BottleEngine* m_engine;
    Downloads* m_downloads;
    QString m_catalogueDir;
    QHash<QString, QQueue<Install>> m_lines;  ///< by bottle
};
