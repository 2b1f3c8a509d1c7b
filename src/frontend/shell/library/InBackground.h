#pragma once

#include <QFutureWatcher>
#include <QObject>
#include <QtConcurrent>

/// Hands the result of work on another thread to `take`, unless the context is gone by then.
template <class Work, class Take>
void inBackground(QObject* context, Work work, Take take) {
    using Result = decltype(work());
    auto* watcher = new QFutureWatcher<Result>(context);
    QObject::connect(watcher, &QFutureWatcherBase::finished, context, [watcher, take] {
        watcher->deleteLater();
        take(watcher->result());
    });
    watcher->setFuture(QtConcurrent::run(work));
}
