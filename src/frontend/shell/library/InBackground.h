#pragma once

#include <QFutureWatcher>
#include <QObject>
#include <QThreadPool>
#include <QtConcurrent>

#include "backend/ServiceThreads.h"

/// Hands the result of work on another thread to `take`, unless the context is gone by then. The work is done
/// in any case.
template <class Work, class Take>
auto inBackground(QObject* context, Work work, Take take,
                  QThreadPool* threads = QThreadPool::globalInstance()) {
    using Result = decltype(work());
    auto* watcher = new QFutureWatcher<Result>(context);
    QObject::connect(watcher, &QFutureWatcherBase::finished, context, [watcher, take] {
        watcher->deleteLater();
        take(watcher->result());
    });
    watcher->setFuture(QtConcurrent::run(threads, work));
    return watcher->future();
}

/// The same for work that waits for the background service.
template <class Work, class Take>
auto askingService(QObject* context, Work work, Take take) {
    return inBackground(context, work, take, ServiceThreads::pool());
}
