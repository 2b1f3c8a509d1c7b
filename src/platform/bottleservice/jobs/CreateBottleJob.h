#pragma once

#include "bottleservice/bottles/BottleStore.h"
#include "bottleservice/jobs/Job.h"
#include "bottleservice/wine/Runners.h"

class Reclaimer;
class StagedBottle;
class Templates;

/// Makes a bottle in a hidden directory as a copy of its Wine's template and gives it its name when it is
/// complete. Answers with JSON: {"ok", "created", "path", "runner"} or {"ok": false, "error"}. A bottle that
/// exists already is left unchanged and answered with "ok" true and "created" false, since the caller has
/// what it asked for.
class CreateBottleJob : public Job {
    Q_OBJECT

public:
    CreateBottleJob(const BottleStore& store, const QString& name, const QString& runner,
                    const Runners& runners, Templates* templates, Reclaimer* reclaimer, Reply reply);

    void start() override;
    void cancel() override;

private:
    void onCopied(const Reason& reason);
    void succeed(bool created, const QString& runner);
    void fail(const Reason& reason);

    BottleStore m_store;
    QString m_name;
    QString m_runnerName;
    Runners m_runners;
    Templates* m_templates;
    Reclaimer* m_reclaimer;
    StagedBottle* m_staged = nullptr;
    bool m_cancelled = false;
};
