#include "store/install/SetupProgress.h"

#include <QtGlobal>

namespace {

int share(qint64 step, qint64 steps) {
    return int(qBound<qint64>(0, step * 100 / qMax<qint64>(steps, 1), 100));
}

}  // namespace

int SetupProgress::beginStep(int step, int steps) {
    const int before = progress;
    progress = share(step, steps);
    target = share(qint64(step) + 1, steps);
    return before;
}

bool SetupProgress::creep() {
    if (progress >= target)
        return false;
    ++progress;
    return true;
}
