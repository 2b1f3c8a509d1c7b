#pragma once

#include <QJsonObject>
#include <QVector>
#include <atomic>
#include <memory>

#include "bottleservice/bottles/BottleUse.h"
#include "bottleservice/jobs/Job.h"
#include "bottleservice/jobs/JobBottle.h"

/// Deletes a bottle in which nothing was installed. Collects the facts; BottleUse decides. Otherwise the
/// bottle stays, and when it has no program, the programs that are found in it are entered: those that its
/// shortcuts start, or else the executables that are new. Waits some seconds for programs that are about to
/// end; ends nothing itself unless the bottle is deleted.
///
/// Answers with JSON: {"deleted": bool, "reason": why the bottle stays, "programs": [ids of its programs but
/// the ignored one]}.
class DeleteUnusedJob : public Job {
    Q_OBJECT

public:
    /// What the job needs of the requests that started it.
    struct Tools {
        QString iconScript;  ///< path of icon_extractor.py
        /// Makes the job that deletes the bottle. Without it a bottle to be deleted stays, and the answer is
        /// {"deleted": false, "unused": true}.
        std::function<std::unique_ptr<Job>(const Reply&)> makeDeletion;
        /// Enters records of new programs into the bottle. Without it a bottle that stays is left unchanged.
        std::function<Answer(const QVector<QJsonObject>& records)> enterPrograms;
    };

    /// ignoredProgram is the id of a program that does not count, such as the set-up's; may be empty.
    DeleteUnusedJob(const JobBottle& bottle, const QString& ignoredProgram, Tools tools, Reply reply);

    void start() override;
    void cancel() override { *m_cancelled = true; }

private:
    struct Findings;

    void inspect();
    void conclude(const Findings& findings);
    void deleteBottle();
    void keep(const QString& reason, const Findings& findings);
    /// The bottle's programs but the ignored one; nothing when its settings cannot be read.
    std::optional<QJsonObject> otherPrograms() const;

    JobBottle m_bottle;
    QString m_ignored;
    Tools m_tools;
    std::shared_ptr<std::atomic_bool> m_cancelled = std::make_shared<std::atomic_bool>(false);
    std::unique_ptr<Job> m_deletion;
};
