#pragma once

#include <QObject>
#include <QTimer>
#include <functional>
#include <memory>

#include "bottleservice/files/Reclaimer.h"
#include "bottleservice/jobs/JobBottle.h"
#include "bottleservice/jobs/JobQueue.h"
#include "bottleservice/result/Answer.h"
#include "bottleservice/wine/BottleAccess.h"
#include "bottleservice/wine/Templates.h"

/// What all families of requests (classes called ...Requests) work with: the bottles, their templates, and
/// the queues in which jobs change them. Everything that changes a bottle goes through that bottle's queue;
/// ending processes does not wait there. Knows no bus. Owned by BottleService; lives in the main thread.
class BottleEngine : public QObject {
    Q_OBJECT

public:
    /// dataDir holds "bottles", "runners" and "public-bottles.json"; it is made if it is missing.
    explicit BottleEngine(const QString& dataDir, QObject* parent = nullptr);
    ~BottleEngine() override;

    QString dataDir() const { return m_dataDir; }
    const BottleAccess& bottles() const { return m_bottles; }
    Templates* templates() { return &m_templates; }
    Reclaimer* reclaimer() { return &m_reclaimer; }
    /// The bottle as its jobs get it; it need not exist.
    JobBottle jobBottle(const QString& bottle);

    /// Adds a job to the bottle's queue. A queue that is closed drops it, and the job then answers that the
    /// service is ending.
    void enqueue(const QString& bottle, std::unique_ptr<Job> job);
    /// The same for a function that answers at once when its turn has come.
    void enqueue(const QString& bottle, const Reply& reply, std::function<Answer()> work);
    /// For jobs that only end processes. They run beside the bottle's queue, so that nobody waits for an
    /// installation before a program is ended.
    void enqueueStop(const QString& bottle, std::unique_ptr<Job> job);
    /// Whether jobs of the bottle run or wait.
    bool hasJobs(const QString& bottle) const { return m_queue.hasJobs(bottle); }
    /// Adds a job that updates the bottle to the installed build of its Wine (RenewBottleJob).
    void renew(const QString& bottle);
    /// Waits as BottleAccess::waitForPrograms() does, for a request to install something. While the bottle's
    /// queue has jobs it reports no program at once: the processes may be the service's own, and the
    /// installation checks again when its turn has come.
    void waitBeforeInstall(const QString& bottle, QObject* context,
                           const std::function<void(const QStringList& running)>& then);

    /// Nothing is being done, not even in the background.
    bool isIdle() const;
    /// Nobody waits for anything; a template may be prepared in advance.
    bool isQuiet() const;
    bool isClosing() const { return m_closing; }
    /// Cancels running jobs and accepts no new ones; closed() follows.
    void close();

Q_SIGNALS:
    void closed();

private:
    void reportClosed();

    QString m_dataDir;
    BottleAccess m_bottles;
    Reclaimer m_reclaimer;
    Templates m_templates;
    JobQueue m_queue;
    JobQueue m_stops;
    QTimer m_trim;
    bool m_closing = false;
};
