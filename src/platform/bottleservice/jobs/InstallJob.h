#pragma once

#include <QPointer>
#include <atomic>
#include <memory>

#include "bottleservice/bottles/BottleYaml.h"
#include "bottleservice/jobs/Job.h"
#include "bottleservice/wine/Runners.h"

class BottleEngine;
class WineCommand;

/// Changes what lies in a bottle, as a transaction: makes launch scripts wait, ends Wine's own services,
/// backs up the bottle's "windows" and registry, lets a derived class do the work, waits until Wine has left
/// the bottle, and writes bottle.yml. Fails with Busy, and changes nothing, while programs run in the bottle.
/// Until that has been written, every failure, cancel() and the next start of the service after a kill bring
/// back what was there.
class InstallJob : public Job {
    Q_OBJECT

public:
    InstallJob(BottleEngine* engine, const QString& bottle, Reply reply);

    void start() final;
    void cancel() final;

Q_SIGNALS:
    /// The bottle's turn has come.
    void started();

protected:
    /// Looks at the bottle; a reason refuses the job. Nothing to do is a reason to end with success.
    enum class Need { Work, Nothing };
    virtual Need prepare(const BottleYaml& settings, const Runner& runner, Reason* refusal) = 0;
    /// Calls worked() once, at once or later.
    virtual void work() = 0;
    /// Asks work() to end soon.
    virtual void abort() = 0;
    /// Enters the result; written together with the end of the transaction.
    virtual void enter(BottleYaml* settings) = 0;

    void worked(const Reason& reason);

    BottleEngine* engine() const { return m_engine; }
    QString bottle() const { return m_bottle; }
    QString bottlePath() const;
    std::shared_ptr<std::atomic_bool> cancelled() const { return m_cancelled; }

private:
    void begin();
    void onLooked(const QStringList& running);
    void stopBottle(std::function<void()> then);
    void setAside();
    void settle();
    void complete();
    void takeBack(const Reason& cause);
    void conclude(const Reason& reason);

    BottleEngine* m_engine;
    QString m_bottle;
    QString m_id;
    Runner m_runner;
    std::shared_ptr<std::atomic_bool> m_cancelled = std::make_shared<std::atomic_bool>(false);
    QPointer<WineCommand> m_wait;
    bool m_working = false;
};

/// Decides about a backup that an earlier service has left in a bottle: brings the bottle back to what it
/// was, or, where the installation had been completed, lets the backup go.
class RecoverInstallJob : public Job {
    Q_OBJECT

public:
    RecoverInstallJob(BottleEngine* engine, const QString& bottle);
    void start() override;

private:
    void restore();
    void removeFiles(const QString& sentence);

    BottleEngine* m_engine;
    QString m_bottle;
};
