#pragma once

#include <atomic>
#include <memory>

#include "bottleservice/bottles/BottleStore.h"
#include "bottleservice/jobs/Job.h"
#include "bottleservice/wine/Runners.h"

class Reclaimer;
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
    void onTemplate(const QString& path, const Reason& reason);
    void onCopied(const QString& errorText);
    QString complete();
    void succeed(bool created, const QString& runner);
    void fail(const Reason& fault);

    BottleStore m_store;
    QString m_name;
    QString m_runnerName;
    Runners m_runners;
    Runner m_runner;
    Templates* m_templates;
    Reclaimer* m_reclaimer;
    QString m_workingDirectory;
    QString m_templateKey;
    std::shared_ptr<std::atomic_bool> m_cancelled = std::make_shared<std::atomic_bool>(false);
};
