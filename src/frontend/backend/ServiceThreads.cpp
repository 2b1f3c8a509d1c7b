#include "backend/ServiceThreads.h"

#include <QDeadlineTimer>
#include <QDebug>
#include <QThreadPool>

namespace {

constexpr int MostAtOnce = 4;  ///< they sleep
constexpr int LongestEndMs = 3000;

/// Never taken down: the destructor would wait for as long as the service does.
QThreadPool* makePool(int threads) {
    auto* pool = new QThreadPool;
    pool->setMaxThreadCount(threads);
    return pool;
}

}  // namespace

QThreadPool* ServiceThreads::pool() {
    static QThreadPool* const threads = makePool(MostAtOnce);
    return threads;
}

QThreadPool* ServiceThreads::inOrder() {
    static QThreadPool* const thread = makePool(1);
    return thread;
}

void ServiceThreads::settle() {
    static const QDeadlineTimer end(LongestEndMs);
    if (!pool()->waitForDone(int(end.remainingTime())) || !inOrder()->waitForDone(int(end.remainingTime())))
        qWarning() << "the bottle service does not answer";
}

bool ServiceThreads::isQuiet() {
    return pool()->activeThreadCount() == 0 && inOrder()->activeThreadCount() == 0;
}
