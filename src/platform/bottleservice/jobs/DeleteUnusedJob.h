#pragma once

#include <atomic>
#include <memory>

#include "bottleservice/bottles/BottleUse.h"
#include "bottleservice/jobs/Job.h"

class BottleEngine;
class ProgramRequests;

/// Deletes a bottle in which nothing was installed, which BottleUse decides on what this job finds out.
/// Otherwise the bottle stays, and when it has no program, what was found in it is entered: what its
/// shortcuts start, or else the executables that are new. What is about to end gets some seconds to do so;
/// nothing is ended unless the bottle goes.
///
/// Answers with JSON: {"deleted": bool, "reason": why it stays, "programs": [ids of its programs but the
/// ignored one]}.
class DeleteUnusedJob : public Job {
    Q_OBJECT

public:
    /// ignoredProgram is the id of an entry that does not count, such as that of the set-up; may be empty.
    DeleteUnusedJob(BottleEngine* engine, ProgramRequests* programs, const QString& bottle,
                    const QString& ignoredProgram, Reply reply);

    void start() override;
    void cancel() override { *m_cancelled = true; }

private:
    struct Finding;

    void look();
    void conclude(const Finding& finding);
    void deleteBottle();
    void keep(const QString& reason, const Finding& finding);

    BottleEngine* m_engine;
    ProgramRequests* m_programs;
    QString m_bottle;
    QString m_ignored;
    std::shared_ptr<std::atomic_bool> m_cancelled = std::make_shared<std::atomic_bool>(false);
    std::unique_ptr<Job> m_deletion;
};
