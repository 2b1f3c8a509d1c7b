#include "bottleservice/requests/CleanUpRequests.h"

#include "bottleservice/requests/BottleEngine.h"
#include "bottleservice/requests/BottleRequests.h"
#include "bottleservice/requests/ProgramRequests.h"
#include "bottleservice/requests/RequestChecks.h"

void CleanUpRequests::deleteIfUnused(const QString& bottle, const QString& ignoredProgram,
                                     const Reply& reply) {
    if (RequestChecks::refuseName(bottle, reply))
        return;
    DeleteUnusedJob::Tools tools = toolsFor(bottle);
    tools.enterPrograms = [programs = m_programs, bottle](const QVector<QJsonObject>& records) {
        return programs->enter(bottle, records);
    };
    m_engine->enqueue(
        bottle, std::make_unique<DeleteUnusedJob>(m_engine->jobBottle(bottle), ignoredProgram, tools, reply));
}

std::unique_ptr<Job> CleanUpRequests::makeDeletionOfUnused(const QString& bottle, const Reply& reply) {
    return std::make_unique<DeleteUnusedJob>(m_engine->jobBottle(bottle), QString(), toolsFor(bottle), reply);
}

std::unique_ptr<Job> CleanUpRequests::makeJudgement(const QString& bottle, const Reply& reply) {
    DeleteUnusedJob::Tools tools = toolsFor(bottle);
    tools.makeDeletion = nullptr;
    return std::make_unique<DeleteUnusedJob>(m_engine->jobBottle(bottle), QString(), tools, reply);
}

DeleteUnusedJob::Tools CleanUpRequests::toolsFor(const QString& bottle) const {
    return {m_programs->iconScript(),
            [bottles = m_bottles, bottle](const Reply& deleted) {
                return bottles->makeDeletion(bottle, deleted);
            },
            {}};
}
