#pragma once

#include <QDateTime>
#include <QJsonObject>
#include <QPointer>
#include <atomic>
#include <memory>
#include <optional>

#include "bottleservice/bottles/BottleStore.h"
#include "bottleservice/components/ComponentStore.h"
#include "bottleservice/components/Recipe.h"
#include "bottleservice/components/Sources.h"
#include "bottleservice/jobs/Job.h"
#include "bottleservice/jobs/JobBottle.h"
#include "bottleservice/jobs/SetupSteps.h"
#include "bottleservice/wine/HiddenDrives.h"
#include "manifest/Manifest.h"

class Downloads;
class RegistryWriter;
class SetupCommand;
class SetupDependency;
class StagedBottle;
class WineCommand;

/// Makes a bottle as a manifest describes it. All work is done in a hidden directory (StagedBottle) that gets
/// the bottle's name as the last step, so that failure, cancel() and a kill of the service at any moment
/// leave no bottle. An existing bottle is replaced, also as the last step, only when it is known to hold
/// nothing; otherwise the job fails. Runs only Wine's own programs and the manifest's commands
/// (SetupCommand), from which no drive leads out of the bottle; whatever they have started ends with the job.
/// Owned by the bottle's queue; lives in the main thread, works in child processes and worker threads.
class SetupBottleJob : public Job {
    Q_OBJECT

public:
    using MakeJob = std::function<std::unique_ptr<Job>(const Reply&)>;

    /// What the job needs of the requests that started it.
    struct Tools {
        BottleStore store;
        Reclaimer* reclaimer;
        Downloads* downloads;
        Recipes recipes;
        Sources sources;
        ComponentStore components;
        /// Makes a job that judges whether the bottle holds nothing, and one that then deletes it, as
        /// DeleteUnusedJob does; they change nothing otherwise.
        MakeJob makeJudgement;
        MakeJob makeDeletion;
    };

    /// `text` is the manifest as it was given. Its DXVK and VKD3D must have been fetched.
    SetupBottleJob(const JobBottle& bottle, const Manifest& manifest, const QByteArray& text,
                   const Runner& runner, Tools tools, Reply reply);
    ~SetupBottleJob() override;

    void start() override;
    void cancel() override;

    /// Whether the job is deleting the empty bottle that it replaces.
    bool isReplacing() const { return m_isReplacing; }

Q_SIGNALS:
    /// A step of SetupSteps::of() begins, the first one is 0.
    void stepStarted(int step, const QString& title);
    void described(const QString& text);
    /// The progress of a download, in bytes; total is 0 while it is not known.
    void progress(const QString& file, qint64 received, qint64 total);

private:
    void withExisting(const MakeJob& make, const QString& key, std::function<void()> then);
    void next();
    void carryOut(const SetupStep& step);
    void stepEnded(const Reason& reason);
    void create();
    Reason planDependencies();
    void installLayers();
    void installDependency(int index);
    void applySettings();
    void writeFiles();
    void run(const Manifest::Command& command);
    void finishWine();
    void stopProcesses(std::function<void(bool isClean)> then);
    void recordFiles();
    void takeName();
    void place();
    void fail(const Reason& reason);

    JobBottle m_bottle;
    Manifest m_manifest;
    QByteArray m_text;
    Runner m_runner;
    Tools m_tools;
    QVector<SetupStep> m_steps;
    int m_next = 0;
    std::shared_ptr<std::atomic_bool> m_cancelled = std::make_shared<std::atomic_bool>(false);
    std::unique_ptr<Job> m_existing;  ///< judges or deletes the bottle that has the name already
    bool m_isReplacing = false;
    QDateTime m_begun;
    HiddenDrives m_drives;
    StagedBottle* m_staged = nullptr;
    std::optional<BottleYaml> m_settings;
    QVector<QVector<Recipe>> m_plans;  ///< for each dependency; empty when it came with one before
    QPointer<SetupDependency> m_dependency;
    QPointer<RegistryWriter> m_writer;
    QPointer<SetupCommand> m_command;
    QPointer<WineCommand> m_waiting;  ///< for the end of what runs in the bottle
    bool m_isFailing = false;
};
