#pragma once

#include "bottleservice/result/Answer.h"

class BottleEngine;
class ProgramRequests;

/// The requests that launches make about what they leave behind.
class CleanUpRequests {
public:
    CleanUpRequests(BottleEngine* engine, ProgramRequests* programs)
        : m_engine(engine), m_programs(programs) {}

    /// See DeleteUnusedJob.
    void deleteIfUnused(const QString& bottle, const QString& ignoredProgram, const Reply& reply);

private:
    BottleEngine* m_engine;
    ProgramRequests* m_programs;
};
