#pragma once

#include <QFutureWatcher>
#include <QObject>
#include <QThreadPool>
#include <QtConcurrent>
#include <memory>

#include "fenk/system/Singleton.h"

/// What a user has asked for and the background service has not done yet. While somebody holds it, the
/// process goes on, also without a window. GUI thread only.
class PendingWork : public QObject, public Fenk::Singleton<PendingWork> {
    Q_OBJECT
    friend class Fenk::Singleton<PendingWork>;

public:
    /// Ends with its last copy.
    using Hold = std::shared_ptr<void>;

    Hold hold();
    bool isPending() const { return m_holds > 0; }

    /// Runs the work on a thread of the pool, and holds until it has been done.
    template <class Work>
    auto run(QThreadPool* threads, Work work) -> QFuture<decltype(work())> {
        auto* watcher = new QFutureWatcher<decltype(work())>(this);
        connect(watcher, &QFutureWatcherBase::finished, watcher,
                [watcher, held = hold()] { watcher->deleteLater(); });
        const auto future = QtConcurrent::run(threads, work);
        watcher->setFuture(future);
        return future;
    }

Q_SIGNALS:
    /// Nothing is pending any more.
    void done();

private:
    PendingWork() = default;

    int m_holds = 0;
};
