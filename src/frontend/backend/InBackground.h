#pragma once

#include <QCoreApplication>
#include <QFutureWatcher>
#include <QObject>
#include <QPointer>
#include <QThreadPool>
#include <QtConcurrent>

#include "backend/PendingWork.h"
#include "backend/ServiceThreads.h"

/// Hands the result of work on another thread to `take`, unless the context is gone by then. The work is done
/// in any case.
template <class Work, class Take>
void inBackground(QObject* context, Work work, Take take,
                  QThreadPool* threads = QThreadPool::globalInstance()) {
    using Result = decltype(work());
    auto* watcher = new QFutureWatcher<Result>(context);
    QObject::connect(watcher, &QFutureWatcherBase::finished, context, [watcher, take] {
        watcher->deleteLater();
        take(watcher->result());
    });
    watcher->setFuture(QtConcurrent::run(threads, work));
}

/// The same for work that waits for the background service.
template <class Work, class Take>
void callServiceAsync(QObject* context, Work work, Take take) {
    inBackground(context, work, take, ServiceThreads::pool());
}

/// The same for what a user wants done: the process does not end before.
template <class Work, class Take>
void changeServiceAsync(QObject* context, Work work, Take take,
                        QThreadPool* threads = ServiceThreads::pool()) {
    const QPointer<QObject> taker = context;
    inBackground(
        qApp, work,
        [taker, take, hold = PendingWork::instance()->hold()](const auto& result) {
            if (taker)
                take(result);
        },
        threads);
}
