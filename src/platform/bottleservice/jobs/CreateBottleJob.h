#pragma once

#include "bottleservice/bottles/BottleStore.h"
#include "bottleservice/jobs/Job.h"
#include "bottleservice/wine/Runners.h"

class PrefixBuilder;
class Reclaimer;

/// Makes a bottle in a hidden directory and moves it into place when it is whole. Answers with JSON: {"ok",
/// "created", "path", "runner"} or {"ok": false, "error"}. A bottle that exists already is left as it is and
/// answered with "ok" true and "created" false: the caller has what it asked for.
class CreateBottleJob : public Job {
    Q_OBJECT

public:
    CreateBottleJob(const BottleStore& store, const QString& name, const QString& runner,
                    const Runners& runners, Reclaimer* reclaimer, Reply reply);

    void start() override;
    void cancel() override;

    /// The answer that a failure gets.
    static Answer refusal(const QString& sentence);

private:
    void onBuilt(const QString& sentence);
    QString complete();
    void succeed(bool created, const QString& runner);
    void fail(const QString& sentence);

    BottleStore m_store;
    QString m_name;
    QString m_runnerName;
    Runners m_runners;
    Runner m_runner;
    Reclaimer* m_reclaimer;
    QString m_workingDirectory;
    PrefixBuilder* m_builder = nullptr;
};
