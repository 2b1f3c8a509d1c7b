#include "backend/ServiceThreads.h"

#include <unistd.h>

#include <QDebug>
#include <QThreadPool>
#include <cstdio>

namespace {
constexpr int MostAtOnce = 4;  ///< they sleep
constexpr int LongestEndMs = 3000;
}  // namespace

QThreadPool* ServiceThreads::pool() {
    // Never taken down: the destructor would wait for as long as the service does.
    static QThreadPool* const threads = [] {
        auto* made = new QThreadPool;
        made->setMaxThreadCount(MostAtOnce);
        return made;
    }();
    return threads;
}

void ServiceThreads::settle(int exitCode) {
    if (pool()->waitForDone(LongestEndMs))
        return;
    qWarning() << "the bottle service does not answer, leaving without it";
    std::fflush(nullptr);
    ::_exit(exitCode);
}
