#pragma once

#include <QHash>
#include <QObject>
#include <QString>
#include <deque>
#include <memory>

#include "bottleservice/jobs/Job.h"

/// A queue of jobs for each bottle: the jobs of a bottle run one after the other in the order in which they
/// were added, those of different bottles side by side. Owned by BottleEngine; lives in the main thread.
class JobQueue : public QObject {
    Q_OBJECT

public:
    explicit JobQueue(QObject* parent = nullptr) : QObject(parent) {}
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
    using Line = std::deque<std::unique_ptr<Job>>;

    void startFirst(const QString& bottle);
    void removeFirst(const QString& bottle);

    QHash<QString, std::shared_ptr<Line>> m_lines;
    bool m_closed = false;
};
