#include "launch/watch/X11FindWindowThread.h"

#include <cstdlib>
#include <memory>

#include "core/base/WineNames.h"
#include "launch/watch/WatchLog.h"
#include "launch/watch/WineWindows.h"

namespace {

constexpr unsigned long PollIntervalUs = 10000;

bool isSameDirectory(const QByteArray& one, const char* other) {
    if (one.isEmpty())
        return false;
    using Path = std::unique_ptr<char, decltype(&std::free)>;
    const Path first(realpath(one.constData(), nullptr), &std::free);
    const Path second(realpath(other, nullptr), &std::free);
    return first && second && qstrcmp(first.get(), second.get()) == 0;
}

}  // namespace

X11FindWindowThread::X11FindWindowThread(const char* prefixPath, QObject* parent)
    : QThread(parent), m_prefixPath(prefixPath) {
    X11Desktop::prepareThreads();
}

X11FindWindowThread::~X11FindWindowThread() {
    stop();
    wait();
}

void X11FindWindowThread::run() {
    bool found = false;
    {
        X11Desktop desktop;
        WineWindows wine(desktop);
        while (desktop.isOpen() && !found && !stopRequested()) {
            for (const X11Desktop::Window window : desktop.windows()) {
                const auto environment = wine.wineEnvironmentOfWindow(window);
                if (!isSameDirectory(environment.value(WineNames::winePrefixPrefix()), m_prefixPath))
                    continue;
                qCInfo(windowLog) << "find wine window: " << window << "in prefix " << m_prefixPath;
                found = true;
                break;
            }
            if (!found && !desktop.takePropertyChange())
                usleep(PollIntervalUs);
        }
    }
    if (found)
        Q_EMIT windowFound();
}
