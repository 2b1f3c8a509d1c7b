#pragma once

#include "bottleservice/result/Answer.h"

class BottleEngine;
class BottleRequests;
class ProgramRequests;

/// The requests of launches that clean up after themselves. Owned by BottleService; lives in the main thread.
class CleanUpRequests {
public:
    CleanUpRequests(BottleEngine* engine, BottleRequests* bottles, ProgramRequests* programs)
        : m_engine(engine), m_bottles(bottles), m_programs(programs) {}

    /// See DeleteUnusedJob.
    void deleteIfUnused(const QString& bottle, const QString& ignoredProgram, const Reply& reply);

private:
    BottleEngine* m_engine;
    BottleRequests* m_bottles;
    ProgramRequests* m_programs;
};
