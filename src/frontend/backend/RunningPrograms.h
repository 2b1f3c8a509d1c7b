#pragma once

#include "backend/ServiceProxy.h"

/// The client of the background service's interface for what runs; holds no state. Lives in the GUI thread.
class RunningPrograms : public ServiceProxy<RunningPrograms> {
    Q_OBJECT
    friend class Fenk::Singleton<RunningPrograms>;

public:
    /// The answer is an array of objects: "bottle", "program" (its id), "pids" (an array, which may be
    /// empty).
    void watchRunning(QObject* context, const Handler& handler) { watch("running", {}, context, handler); }

Q_SIGNALS:
    // From the bus, under these names.
    void started(const QString& bottle, const QString& program);
    void ended(const QString& bottle, const QString& program);

private:
    RunningPrograms() : ServiceProxy("Programs", BusTimeoutMs) {}
};
