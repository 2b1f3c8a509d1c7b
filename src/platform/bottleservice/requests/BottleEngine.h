#pragma once

#include <QHash>
#include <QObject>
#include <QTimer>

#include "bottleservice/bottles/BottleStore.h"
#include "bottleservice/files/Reclaimer.h"
#include "bottleservice/jobs/JobQueue.h"
#include "bottleservice/result/Answer.h"
#include "bottleservice/wine/Runners.h"
#include "bottleservice/wine/RunningPrograms.h"
#include "bottleservice/wine/Templates.h"

class BottleStopper;

/// What the service can do, without a bus. Reading answers at once; everything that changes a bottle or its
/// processes goes through that bottle's queue and answers when it is done. Owns the queue, the background
/// removal and the knowledge of where bottles and runners lie. Ending what runs does not wait in that queue.
/// Families of requests (classes called
/// ...Requests) stand on its tools for requests. Lives in the main thread.
class BottleEngine : public QObject {
    Q_OBJECT

public:
    /// dataDir holds "bottles", "runners" and "public-bottles.json"; it is made if it is missing.
    explicit BottleEngine(const QString& dataDir, QObject* parent = nullptr);
    ~BottleEngine() override;

    /// Removes what jobs of an earlier run left half done. Once, before the first request.
    void recover();

    Answer list() const;
    Answer get(const QString& bottle) const;
    Answer getEmulators(const QString& bottle) const;
    Answer checkPublicBottles(const QString& queryJson) const;
    void getRunnerVersion(const QString& runner, const Reply& reply);

    void createBottles(const QString& bottle, const QString& runner, const Reply& reply);
    void deleteBottle(const QString& bottle, const Reply& reply);
    /// The job of deleteBottle, for a job of that bottle which has decided so.
    std::unique_ptr<Job> deletionOf(const QString& bottle, const Reply& reply);

    /// Nothing is being done, not even in the background.
    bool isIdle() const;
    /// Nobody waits for anything; a template may be prepared in advance.
    bool isQuiet() const;

    /// Cancels what runs and takes nothing new; closed() follows.
    void close();

    /// Tools for requests.
    const BottleStore& store() const { return m_store; }
    const Runners& runners() const { return m_runners; }
    QString dataDir() const { return m_dataDir; }
    Reclaimer* reclaimer() { return &m_reclaimer; }
    Templates* templates() { return &m_templates; }
    /// Answers a request whose bottle has an impossible name; then true.
    bool refuse(const QString& bottle, const Reply& reply) const;
    /// The same for a bottle that is not there.
    bool refuseUnknown(const QString& bottle, const Reply& reply) const;
    /// Good if the bottle may be used.
    Answer checked(const QString& bottle) const;
    static Answer noProgram(const QString& bottle, const QString& programId);
    /// The settings of a bottle that may be used; otherwise nothing, and why.
    std::optional<BottleYaml> loaded(const QString& bottle, Answer* failure) const;
    void enqueue(const QString& bottle, const Reply& reply, std::function<Answer()> work);
    void enqueue(const QString& bottle, std::unique_ptr<Job> job);
    /// For jobs that only end processes: beside the bottle's queue, since nobody waits for minutes until a
    /// program is ended.
    void enqueueStop(const QString& bottle, std::unique_ptr<Job> job);
    /// The names of the programs that run in the bottle or are being started there.
    QStringList runningPrograms(const QString& bottle) const;
    /// Calls then with the names of the programs that run in the bottle or are being started there: when
    /// there are none, or after the limit. Not called when context is destroyed before.
    void waitForPrograms(const QString& bottle, QObject* context,
                         const std::function<void(const QStringList& running)>& then,
                         int limitMs = RunningPrograms::GraceMs);
    /// The same for a request, before the bottle's turn. While the service itself is at work in the bottle
    /// there is nothing to tell: its processes are no programs, and an installation looks once more.
    void waitBeforeInstall(const QString& bottle, QObject* context,
                           const std::function<void(const QStringList& running)>& then);
    /// Removes the files that an installation has set aside.
    void removeBackup(const QString& bottle);
    /// Writes bottle.yml and launch.json. Only from a job of that bottle.
    bool saveSettings(const QString& bottle, const BottleYaml& settings, QString* error);
    /// Lets a bottle follow an update of its Wine before the jobs that are added after this.
    void renew(const QString& bottle);
    /// The bottles that were made by another build of their Wine than is installed now.
    QStringList outdatedBottles() const;
    /// Removes the templates of which no bottle and no Wine is left.
    void removeUnneededTemplates();
    bool isClosing() const { return m_closing; }
    /// Without a Wine when the runner is not installed.
    Runner runnerOf(const BottleYaml& settings) const;

Q_SIGNALS:
    /// What is being done in the bottle is in vain from now on.
    void aboutToDelete(const QString& bottle);
    void bottleDeleted(const QString& bottle);
    void closed();

private:
    void removeUnfinishedFiles();
    void tellClosed();
    void writeLaunchData(const QString& bottle, const BottleYaml& settings) const;

    QString m_dataDir;
    BottleStore m_store;
    Runners m_runners;
    Reclaimer m_reclaimer;
    Templates m_templates;
    JobQueue m_queue;
    JobQueue m_stops;
    QTimer m_trim;
    bool m_closing = false;
    QHash<QString, QString> m_versions;  ///< by path, time and size of the Wine
};
