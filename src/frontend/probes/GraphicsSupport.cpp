#include "probes/GraphicsSupport.h"

#include <QThreadPool>
#include <QtConcurrentRun>
#include <optional>

#include "probes/DxChecker.h"

namespace GraphicsSupport {

namespace {

/// Apart from the global pool, which others wait for: drivers and package tools may take long. Never deleted:
/// the destructor would wait for them.
QThreadPool* threads() {
    static auto* const pool = new QThreadPool;
    return pool;
}

}  // namespace

QFuture<Facts> facts() {
    static const QFuture<Facts> found = QtConcurrent::run(threads(), [] {
        const DxChecker checker;
        Facts facts;
        facts.available = checker.isAvailable();
        facts.dxvk = checker.dxvkSupport();
        facts.vkd3d = checker.vkd3dSupport();
        return facts;
    });
    return found;
}

QFuture<bool> driverComplete() {
    static std::optional<QFuture<bool>> check;
    if (!check || (check->isFinished() && !check->result()))
        check = QtConcurrent::run(threads(), vulkanDriverComplete);
    return *check;
}

bool isIdle() {
    return threads()->activeThreadCount() == 0;
}

}  // namespace GraphicsSupport
