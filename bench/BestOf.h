#pragma once

#include <QElapsedTimer>
#include <algorithm>
#include <functional>

/// The least of five runs, in ms: what the machine does besides only ever adds.
inline double bestOf(const std::function<void()>& work) {
    double least = 1e9;
    for (int run = 0; run < 5; ++run) {
        QElapsedTimer elapsed;
        elapsed.start();
        work();
        least = std::min(least, double(elapsed.nsecsElapsed()) / 1e6);
    }
    return least;
}
