#pragma once

#include <memory>

#include "bottleservice/jobs/DeleteUnusedJob.h"
#include "bottleservice/result/Answer.h"

class BottleEngine;
class BottleRequests;
class ProgramRequests;

/// The requests about what launches and removed packages have left. Owned by BottleService; lives in the main
/// thread.
class CleanUpRequests {
public:
    CleanUpRequests(BottleEngine* engine, BottleRequests* bottles, ProgramRequests* programs)
        : m_engine(engine), m_bottles(bottles), m_programs(programs) {}

    /// See DeleteUnusedJob.
    void deleteIfUnused(const QString& bottle, const QString& ignoredProgram, const Reply& reply);

    /// The bottles whose package is gone (PackageOrigin), as an array of {"bottle", "package", "lost"}.
    void bottlesOfRemovedPackages(const Reply& reply);
    /// Makes such a bottle an ordinary one. A bottle whose package is installed is refused.
    void keepBottle(const QString& bottle, const Reply& reply);

    /// The job of deleteIfUnused(), for a job of that bottle which replaces it when it is unused. A bottle
    /// that stays is left unchanged.
    std::unique_ptr<Job> makeDeletionOfUnused(const QString& bottle, const Reply& reply);
    /// The same job, but it only judges.
    std::unique_ptr<Job> makeJudgement(const QString& bottle, const Reply& reply);

private:
    DeleteUnusedJob::Tools toolsFor(const QString& bottle) const;

    BottleEngine* m_engine;
    BottleRequests* m_bottles;
    ProgramRequests* m_programs;
};
