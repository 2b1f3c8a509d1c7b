#pragma once

#include <QFutureWatcher>
#include <QtConcurrent/QtConcurrent>
#include <functional>

/// Blocking work for a thread of the pool.
namespace Background {

/// Runs work in a thread; done gets its result in the main thread, unless context is gone by then. What the
/// work touches must outlive it.
template <class Work, class Done>
void run(QObject* context, Work work, Done done) {
    using Result = decltype(work());
    auto* watcher = new QFutureWatcher<Result>(context);
    QObject::connect(watcher, &QFutureWatcher<Result>::finished, context, [watcher, done = std::move(done)] {
        watcher->deleteLater();
        done(watcher->result());
    });
    watcher->setFuture(QtConcurrent::run(std::move(work)));
}

}  // namespace Background
