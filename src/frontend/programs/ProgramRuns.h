#pragma once

#include <QObject>
#include <QSet>
#include <QTimer>
#include <functional>

#include "backend/ProgramRef.h"
#include "fenk/system/Singleton.h"

struct BusResult;

/// Which stored programs run, whoever has started them: what the background service tells, and the starts of
/// this process that it has not noticed yet. Known from load() on. When the service leaves while something
/// runs it is asked anew, which starts it again. Lives in the GUI thread; waits for nothing.
class ProgramRuns : public QObject, public Fenk::Singleton<ProgramRuns> {
    Q_OBJECT
    friend class Fenk::Singleton<ProgramRuns>;

public:
    /// Asks the service for the present state.
    void load();
    bool isRunning(const ProgramRef& ref) const {
        return m_running.contains(ref) || m_starting.contains(ref);
    }
    /// In any bottle.
    bool isRunning(const QString& uuid) const;
    /// This process has begun to start the program, or what it has started is over.
    void setStarting(const ProgramRef& ref, bool on);
    /// Brings the program's topmost window to the front, once the service has told its processes. `then`
    /// hears whether it has one; not called when context is gone by then.
    void raiseWindow(const ProgramRef& ref, QObject* context, const std::function<void(bool found)>& then);

Q_SIGNALS:
    void changed(const ProgramRef& ref, bool running);

private:
    ProgramRuns();
    void onReply(const BusResult& result);
    void replace(const QSet<ProgramRef>& running);
    /// Carries out what changes a set, and tells what has changed by it.
    void apply(const ProgramRef& ref, const std::function<void()>& change);

    QSet<ProgramRef> m_running;   ///< by the service
    QSet<ProgramRef> m_starting;  ///< by this process
    bool m_isAsking = false;
    int m_retries = 0;
    QTimer m_retry;
};
