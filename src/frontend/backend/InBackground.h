#pragma once

#include <QCoreApplication>
#include <QPointer>
#include <QThreadPool>
#include <QtConcurrentRun>

#include "backend/PendingWork.h"
#include "backend/ServiceThreads.h"
#include "backend/WhenDone.h"

/// Does work on another thread and calls take with its result in the thread of context, unless context is
/// destroyed first. The work is done in any case.
template <class Work, class Take>
void inBackground(QObject* context, Work work, Take take,
                  QThreadPool* threads = QThreadPool::globalInstance()) {
    whenDone(context, QtConcurrent::run(threads, work), take);
}

/// The same for work that waits for the background service.
template <class Work, class Take>
void callServiceAsync(QObject* context, Work work, Take take) {
    inBackground(context, work, take, ServiceThreads::pool());
}

/// The same for what the user wants done: the process does not end before.
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
