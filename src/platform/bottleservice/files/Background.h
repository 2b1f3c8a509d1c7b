#pragma once

#include <QFutureWatcher>
#include <QThreadPool>
#include <QtConcurrentRun>

/// Runs blocking work in a thread of a pool. The one way of the service to do so when somebody waits for the
/// result.
namespace Background {

/// Runs `work` in a thread of the pool; `done` gets its result in the main thread, and is not called when
/// `context` has been destroyed by then. Whatever the work refers to must outlive it.
template <class Work, class Done>
void run(QThreadPool* pool, QObject* context, Work work, Done done) {
    using Result = decltype(work());
    auto* watcher = new QFutureWatcher<Result>(context);
    QObject::connect(watcher, &QFutureWatcher<Result>::finished, context, [watcher, done = std::move(done)] {
        watcher->deleteLater();
        done(watcher->result());
    });
    watcher->setFuture(QtConcurrent::run(pool, std::move(work)));
}

/// The same in the process's global pool.
template <class Work, class Done>
void run(QObject* context, Work work, Done done) {
    run(QThreadPool::globalInstance(), context, std::move(work), std::move(done));
}

}  // namespace Background
