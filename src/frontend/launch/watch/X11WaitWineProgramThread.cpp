#include "launch/watch/X11WaitWineProgramThread.h"

#include <atomic>

#include "core/base/WineNames.h"
#include "launch/watch/WatchLog.h"
#include "launch/watch/WineWindows.h"

Q_LOGGING_CATEGORY(windowLog, "wineapp.window")

namespace {

constexpr unsigned long PollIntervalUs = 10000;
std::atomic<bool> hasSeenError{false};

QStringList programsWithWindows(X11Desktop& desktop, WineWindows& wine) {
    QStringList uuids;
    for (const X11Desktop::Window window : desktop.windows()) {
        const auto environment = wine.wineEnvironmentOfWindow(window);
        const auto uuid = environment.constFind(WineNames::programUuidPrefix());
        if (uuid != environment.cend())
            uuids.append(QString::fromLocal8Bit(*uuid));
    }
    return uuids;
}

}  // namespace

X11WaitWineProgramThread::X11WaitWineProgramThread(QObject* parent) : QThread(parent) {
    X11Desktop::prepareThreads();
}

X11WaitWineProgramThread::~X11WaitWineProgramThread() {
    stop();
    wait();
}

void X11WaitWineProgramThread::run() {
    X11Desktop desktop;
    WineWindows wine(desktop);
    while (desktop.isOpen() && !stopRequested() && !hasSeenError) {
        if (!desktop.takePropertyChange()) {
            usleep(PollIntervalUs);
        } else {
            for (const QString& uuid : programsWithWindows(desktop, wine))
                Q_EMIT winpopuped(uuid);
        }
        if (desktop.hasFailed()) {
            hasSeenError = true;
            qCWarning(windowLog) << "an X error: no more windows are reported";
        }
    }
}
