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

/// The pristine prefixes that bottles are copies of, one for each Wine and build of it, below "templates" of
/// the data directory. The first bottle on a Wine makes its template with one wineboot; a new build of the
/// Wine gets a new one. A template bears its name only when it is whole, and none is exchanged while
/// something reads it. Lives in the main thread; copying and comparing go on in a worker.
class Templates : public QObject {
    Q_OBJECT

public:
    /// path is the template; empty with a sentence when there is none.
    using Ready = std::function<void(const QString& path, const Reason& reason)>;
    /// Work for the worker: empty, or a sentence.
    using Work = std::function<QString(const std::atomic_bool& cancelled)>;

    Templates(const QString& dataDir, Reclaimer* reclaimer, QObject* parent = nullptr);
    ~Templates() override;

    /// Name of the template of this Wine as it is installed now; empty without a Wine.
    static QString keyOf(const Runner& runner);
    QString pathOf(const QString& key) const { return m_directory + '/' + key; }

    /// Makes the template if it is missing. Those who ask meanwhile wait for the same one. ready is called
    /// later, unless context is gone by then.
    void obtain(const Runner& runner, QObject* context, Ready ready);

    /// The same, but the template is always made. One that is there serves until the new one takes its place.
    void recreate(const Runner& runner, QObject* context, Ready ready);

    /// Makes the template if it is missing, at low priority and without anybody who needs it. Whoever obtains
    /// it meanwhile takes the work over as it stands; it then goes on at the ordinary priority.
    void prepare(const Runner& runner, QObject* context, Ready ready);
    bool isMissing(const Runner& runner) const;

    /// Stops what prepare() has begun and nobody needs yet, and lets it go on.
    void pausePreparation();
    void resumePreparation();

    /// Runs work in the worker; done is called in the main thread with its sentence, unless context is gone.
    void run(QObject* context, Work work, std::function<void(const QString&)> done);

    /// Removes templates that are not among the names to keep.
    void removeAllBut(const QStringList& keys);

    /// Ends what is being made; those who wait get a sentence.
    void cancel();
    bool isIdle() const { return m_builds.isEmpty() && m_running == 0; }
    /// Wine's part of all that is being made is over; the rest takes a second.
    bool isAlmostDone() const;
    /// Somebody waits for a template.
    bool isAwaited() const;

Q_SIGNALS:
    void idle();
    /// How much of a template that somebody waits for is done: 0 to 100, never less than before.
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
    void onBuilt(const QString& key, const QString& sentence, const Runner& runner);
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
