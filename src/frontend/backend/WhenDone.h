#pragma once

#include <QFutureWatcher>
#include <QObject>
#include <type_traits>

/// Calls take with the future's result, in the thread of context and later than this call, unless context is
/// destroyed first. A future without work behind it gives a default result. Call it in the thread of context.
template <class Result, class Take>
void whenDone(QObject* context, const QFuture<Result>& future, Take take) {
    auto* watcher = new QFutureWatcher<Result>(context);
    QObject::connect(watcher, &QFutureWatcherBase::finished, context, [watcher, take] {
        watcher->deleteLater();
        if constexpr (std::is_void_v<Result>)
            take();
        else
            take(watcher->isCanceled() ? Result() : watcher->result());
    });
    watcher->setFuture(future);
}
