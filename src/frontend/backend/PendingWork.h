#pragma once

#include <QObject>
#include <QThreadPool>
#include <QtConcurrentRun>
#include <memory>

#include "backend/WhenDone.h"
#include "fenk/system/Singleton.h"

/// Keeps the process running, also without a window, until the background service has done what the user
/// asked for: for as long as there is a Hold. GUI thread only.
class PendingWork : public QObject, public Fenk::Singleton<PendingWork> {
    Q_OBJECT
    friend class Fenk::Singleton<PendingWork>;

public:
    /// Released with its last copy.
    using Hold = std::shared_ptr<void>;

    Hold hold();
    bool isPending() const { return m_holds > 0; }
    /// For a transfer, which has limits of its own and may take hours. Not counted by isPending().
    Hold holdForTransfer();
    bool isTransferring() const { return m_transfers > 0; }

    /// Does work on a thread of the pool, with a hold until it is done.
    template <class Work>
    auto run(QThreadPool* threads, Work work) -> QFuture<decltype(work())> {
        const auto future = QtConcurrent::run(threads, work);
        whenDone(this, future, [held = hold()](const auto&...) {});
        return future;
    }

Q_SIGNALS:
    /// The last hold of its kind was released.
    void done();

private:
    PendingWork() = default;
    Hold hold(int PendingWork::*count);

    int m_holds = 0;
    int m_transfers = 0;
};
