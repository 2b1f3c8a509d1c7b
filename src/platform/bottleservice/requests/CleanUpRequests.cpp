#include "bottleservice/requests/CleanUpRequests.h"

#include "bottleservice/jobs/DeleteUnusedJob.h"
#include "bottleservice/requests/BottleEngine.h"

void CleanUpRequests::deleteIfUnused(const QString& bottle, const QString& ignoredProgram,
                                     const Reply& reply) {
    if (!m_engine->refuse(bottle, reply))
        m_engine->enqueue(
            bottle, std::make_unique<DeleteUnusedJob>(m_engine, m_programs, bottle, ignoredProgram, reply));
}
