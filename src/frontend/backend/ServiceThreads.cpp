#include "backend/ServiceThreads.h"

#include <QDeadlineTimer>
#include <QDebug>
#include <QThreadPool>

namespace {

constexpr int MostThreads = 4;  ///< which sleep
constexpr int LongestWaitMs = 3000;

/// Never deleted: the destructor would wait for the service.
QThreadPool* makePool(int threads) {
    auto* pool = new QThreadPool;
    pool->setMaxThreadCount(threads);
    return pool;
}

}  // namespace

QThreadPool* ServiceThreads::pool() {
    static QThreadPool* const threads = makePool(MostThreads);
    return threads;
}

QThreadPool* ServiceThreads::inOrder() {
    static QThreadPool* const thread = makePool(1);
    return thread;
}

void ServiceThreads::waitForDone() {
    static const QDeadlineTimer end(LongestWaitMs);
    if (!pool()->waitForDone(int(end.remainingTime())) || !inOrder()->waitForDone(int(end.remainingTime())))
        qWarning() << "the bottle service does not answer";
}

bool ServiceThreads::isIdle() {
    return pool()->activeThreadCount() == 0 && inOrder()->activeThreadCount() == 0;
}
