#pragma once

#include <QObject>
#include <QSet>
#include <QTimer>
#include <functional>

#include "backend/ProgramRef.h"
#include "fenk/system/Singleton.h"

struct BusResult;

/// Which stored programs run, whoever started them: those that the background service reports, and those that
/// this process is starting. The service is asked at load(), and again, which starts it, when it leaves the
/// bus while programs run. A failed call is logged and counts as an empty list. One for the process; GUI
/// thread only; no call here waits.
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
    /// Counts a program as running between setStarting(ref, true) and setStarting(ref, false), before the
    /// service knows of it.
    void setStarting(const ProgramRef& ref, bool on);
    /// Raises the program's topmost window, asking the service for its processes first. Calls `then` with
    /// whether there is a window, unless `context` has been deleted by then.
    void raiseWindow(const ProgramRef& ref, QObject* context, const std::function<void(bool found)>& then);

Q_SIGNALS:
    void changed(const ProgramRef& ref, bool running);

private:
    ProgramRuns();
    void onReply(const BusResult& result);
    void replace(const QSet<ProgramRef>& running);
    /// Runs `change` and emits changed() if isRunning(ref) differs afterwards.
    void apply(const ProgramRef& ref, const std::function<void()>& change);

    QSet<ProgramRef> m_running;   ///< as the service says
    QSet<ProgramRef> m_starting;  ///< as this process says
    bool m_isAsking = false;
    int m_retries = 0;
    QTimer m_retry;
};
