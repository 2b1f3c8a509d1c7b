#include "bottleservice/CleanUpRequests.h"

#include "bottleservice/BottleEngine.h"
#include "bottleservice/jobs/DeleteUnusedJob.h"

void CleanUpRequests::deleteIfUnused(const QString& bottle, const QString& ignoredProgram,
                                     const Reply& reply) {
    if (!m_engine->refuse(bottle, reply))
        m_engine->enqueue(
            bottle, std::make_unique<DeleteUnusedJob>(m_engine, m_programs, bottle, ignoredProgram, reply));
}
