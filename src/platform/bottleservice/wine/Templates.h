#pragma once

#include <QHash>
#include <QObject>
#include <QPointer>
#include <QReadWriteLock>
#include <QThreadPool>
#include <QTimer>
#include <QVector>
#include <atomic>
#include <functional>
#include <memory>

#include "bottleservice/result/Reason.h"
#include "bottleservice/wine/Runners.h"

class PrefixBuilder;
class Reclaimer;

/// The fresh prefixes that bottles are copied from, one for each build of each Wine, below "templates" of the
/// data directory. The first bottle on a Wine makes its template with one wineboot; a new build of the Wine
/// gets a new one. A template gets its name when it is complete, and none is replaced while something reads
/// it. Owned by BottleEngine; lives in the main thread, copies and compares in worker threads.
class Templates : public QObject {
    Q_OBJECT

public:
    /// `path` is the template; on failure it is empty and there is a reason.
    using Ready = std::function<void(const QString& path, const Reason& reason)>;
    /// Work for a worker thread; returns an error text, empty on success.
    using Work = std::function<QString(const std::atomic_bool& cancelled)>;

    Templates(const QString& dataDir, Reclaimer* reclaimer, QObject* parent = nullptr);
    ~Templates() override;

    /// The key (directory name) of the template for the installed build of this Wine; empty without a Wine.
    static QString keyOf(const Runner& runner);
    QString pathOf(const QString& key) const { return m_directory + '/' + key; }

    /// Makes the template if it is missing; several callers wait for the same one. `ready` is called later,
    /// unless context has been destroyed by then.
    void obtain(const Runner& runner, QObject* context, Ready ready);

    /// The same, but always makes a new template. The old one is used until the new one replaces it.
    void recreate(const Runner& runner, QObject* context, Ready ready);

    /// Makes the template if it is missing, at low priority, when nobody needs it yet. A later obtain() takes
    /// the work over at the ordinary priority.
    void prepare(const Runner& runner, QObject* context, Ready ready);
    bool isMissing(const Runner& runner) const;

    /// Pauses what prepare() has begun and nobody needs yet, and continues it.
    void pausePreparation();
    void resumePreparation();

    /// Runs work in a worker thread, while no template is replaced. `done` gets its error text in the main
    /// thread, unless context has been destroyed.
    void run(QObject* context, Work work, std::function<void(const QString&)> done);

    /// Removes all templates but these, in the background.
    void removeAllBut(const QStringList& keys);

    /// Cancels all templates that are being made; their callers get a reason.
    void cancel();
    bool isIdle() const { return m_builds.isEmpty() && m_running == 0; }
    /// Wine has done its part of all templates that are being made; the rest takes a second.
    bool isAlmostDone() const;
    /// Somebody waits for a template that is being made.
    bool isAwaited() const;

Q_SIGNALS:
    void idle();
    /// The progress of a template that somebody waits for: 0 to 100, never decreasing.
    void progress(const QString& runner, int percent);

private:
    struct Waiter {
        QPointer<QObject> context;
        Ready ready;
    };
    struct Build {
        QString directory;
        QStringList runners;
        PrefixBuilder* builder = nullptr;
        QVector<Waiter> waiters;
        bool isAwaited = false;
        int percent = 0;
        int toldPercent = -1;
    };

    enum class Access { Shared, Alone };

    enum class Urgency { Awaited, InAdvance };

    void await(const QString& key, const Runner& runner, QObject* context, Ready ready,
               Urgency urgency = Urgency::Awaited);
    void tellProgress();
    void build(const QString& key, const Runner& runner);
    void onBuilt(const QString& key, const QString& errorText, const Runner& runner);
    void place(const QString& key);
    void conclude(const QString& key, const QString& fault);
    void run(Access access, QObject* context, Work work, std::function<void(const QString&)> done);
    void checkIdle();

    QString m_dataDir;
    QString m_directory;
    Reclaimer* m_reclaimer;
    QHash<QString, Build> m_builds;
    QReadWriteLock m_access;
    QThreadPool m_worker;
    std::shared_ptr<std::atomic_bool> m_cancelled = std::make_shared<std::atomic_bool>(false);
    int m_running = 0;
    QTimer m_progressTimer;
};
