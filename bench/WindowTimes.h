#pragma once

#include <unistd.h>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEvent>
#include <QEventLoop>
#include <QFile>
#include <QTimer>
#include <functional>

// What the benches of windows measure with.

inline double milliseconds(const QElapsedTimer& timer) {
    return double(timer.nsecsElapsed()) / 1e6;
}

inline double residentKiB() {
    QFile file("/proc/self/statm");
    if (!file.open(QIODevice::ReadOnly))
        return 0;
    return file.readAll().split(' ').value(1).toDouble() * double(sysconf(_SC_PAGESIZE)) / 1024;
}

inline void settle(int ms) {
    QEventLoop loop;
    QTimer::singleShot(ms, &loop, &QEventLoop::quit);
    loop.exec();
}

inline void waitFor(const std::function<bool()>& condition) {
    while (!condition())
        QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
}

/// Notices the first widget of the wanted ones that is painted.
class FirstPaint : public QObject {
public:
    explicit FirstPaint(const std::function<bool(QObject*)>& isWanted) : m_isWanted(isWanted) {
        QCoreApplication::instance()->installEventFilter(this);
    }
    void wait() const {
        waitFor([this] { return m_isSeen; });
    }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        m_isSeen = m_isSeen || (event->type() == QEvent::Paint && m_isWanted(watched));
        return false;
    }

private:
    std::function<bool(QObject*)> m_isWanted;
    bool m_isSeen = false;
};

template <class Widget>
bool isA(QObject* object) {
    return qobject_cast<Widget*>(object) != nullptr;
}
