#pragma once

#include <QElapsedTimer>
#include <QHash>
#include <QObject>
#include <QString>
#include <deque>
#include <memory>

#include "bottleservice/jobs/Job.h"
#include "bottleservice/wine/BottleLock.h"

/// A queue of jobs for each bottle: the jobs of a bottle run one after the other in the order in which they
/// were added, those of different bottles side by side. Each holds the lock of the bottle while it runs; one
/// that does not get it in time is refused. Owned by BottleEngine; lives in the main thread.
class JobQueue : public QObject {
    Q_OBJECT

public:
    /// Takes the lock of a bottle.
    using Locker = std::function<BottleLock::Refusal(const QString& bottle, BottleLock* lock)>;

    static constexpr int LimitMs = 10000;  ///< for others to leave the bottle

    /// Without a locker, jobs run beside all others.
    explicit JobQueue(Locker locker = {}, QObject* parent = nullptr)
        : QObject(parent), m_locker(std::move(locker)) {}
    ~JobQueue() override;

    void add(const QString& bottle, std::unique_ptr<Job> job);

    bool isIdle() const { return m_lines.isEmpty(); }
    bool hasJobs(const QString& bottle) const { return m_lines.contains(bottle); }

    /// Accepts no more jobs, drops those that wait (they answer that they were cancelled) and cancels those
    /// that run.
    void close();

Q_SIGNALS:
    /// No job is left.
    void idle();

private:
    struct Line {
        std::deque<std::unique_ptr<Job>> jobs;
        BottleLock lock;
        QElapsedTimer sinceRefusal;
        bool hasStarted = false;
    };

    void startFirst(const QString& bottle);
    void removeFirst(const QString& bottle);

    Locker m_locker;
    QHash<QString, std::shared_ptr<Line>> m_lines;
    bool m_closed = false;
};
