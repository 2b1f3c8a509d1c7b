#include "storeserver/reports/ReportKeeper.h"

#include <QDebug>

namespace StoreServer {

namespace {

constexpr qint64 TidyPauseMs = 60 * 60 * 1000;
constexpr int Share = 50;  // of the time at most a fiftieth is for counting
constexpr int WarningPercent = 80;

}  // namespace

ReportKeeper::ReportKeeper(ReportDirectory& directory, ScoreBook& scores,
                           const std::function<qint64()>& clock)
    : m_directory(directory), m_scores(scores), m_clock(clock), m_tidiedMs(clock()) {
    m_thread = std::thread([this] { run(); });
}

ReportKeeper::~ReportKeeper() {
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_isEnding = true;
    }
    m_condition.notify_all();
    m_thread.join();
}

void ReportKeeper::run() {
    std::unique_lock<std::mutex> lock(m_mutex);
    while (!m_isEnding) {
        lock.unlock();
        look();
        lock.lock();
        m_condition.wait_for(lock, Interval, [this] { return m_isEnding; });
    }
}

void ReportKeeper::look() {
    m_scores.flush();
    const auto begin = std::chrono::steady_clock::now();
    const qint64 now = m_clock();
    const bool isTime = qAbs(now - m_tidiedMs) >= TidyPauseMs;
    if (isTime || (m_directory.room().isCountWanted() && begin >= m_nextCount)) {
        m_tidiedMs = now;
        m_directory.tidy(now);
        m_scores.forgetOld(now);
        const auto end = std::chrono::steady_clock::now();
        m_nextCount = end + (end - begin) * Share;
    }
    warn();
}

/// Once, until there is room again.
void ReportKeeper::warn() {
    const int percent = m_directory.room().percent();
    if (percent >= WarningPercent && !m_isWarned)
        qWarning().noquote() << m_directory.path() << "is full to" << percent
                             << "percent; reports are refused when there is no room";
    m_isWarned = percent >= WarningPercent;
}

}  // namespace StoreServer
