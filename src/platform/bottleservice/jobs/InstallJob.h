#pragma once

#include <QPointer>
#include <atomic>
#include <memory>

#include "bottleservice/jobs/Job.h"
#include "bottleservice/jobs/JobBottle.h"

class WineCommand;

/// Changes the files of a bottle as a transaction: makes launch scripts wait, ends Wine's own services, backs
/// up the bottle's "windows" directory and registry, lets a derived class do the work, waits until Wine has
/// left the bottle, and writes bottle.yml. Until that has been written, every failure, cancel() and the next
/// start of the service after a kill restore the backup. Fails with Busy, and changes nothing, while programs
/// run in the bottle. Owned by the bottle's queue; lives in the main thread.
class InstallJob : public Job {
    Q_OBJECT

public:
    InstallJob(const JobBottle& bottle, Reply reply);

    void start() final;
    void cancel() final;

Q_SIGNALS:
    /// It is this job's turn in the bottle, no program runs there, and the transaction begins.
    void started();

protected:
    /// Checks the bottle before anything is changed. A reason in `refusal` makes the job fail; Need::Nothing
    /// ends it with success.
    enum class Need { Work, Nothing };
    virtual Need prepare(const BottleYaml& settings, const Runner& runner, Reason* refusal) = 0;
    /// Does the work and calls worked() exactly once, at once or later.
    virtual void work() = 0;
    /// Asks work() to end soon.
    virtual void abort() = 0;
    /// Enters the result into the settings, which are written at the end of the transaction.
    virtual void enter(BottleYaml* settings) = 0;

    /// An empty reason is success.
    void worked(const Reason& reason);

    const JobBottle& bottle() const { return m_bottle; }
    std::shared_ptr<std::atomic_bool> cancelled() const { return m_cancelled; }

private:
    void begin();
    void onProgramsKnown(const QStringList& running);
    void stopBottle(std::function<void()> then);
    void backUp();
    void waitForWineserver();
    void complete();
    void rollBack(const Reason& cause);
    void conclude(const Reason& reason);

    JobBottle m_bottle;
    QString m_id;
    Runner m_runner;
    std::shared_ptr<std::atomic_bool> m_cancelled = std::make_shared<std::atomic_bool>(false);
    QPointer<WineCommand> m_wait;
    bool m_working = false;
};
