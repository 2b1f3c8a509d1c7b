#pragma once

#include <QtGlobal>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <thread>

#include "storeserver/reports/ReportDirectory.h"
#include "storeserver/reports/ScoreBook.h"

namespace StoreServer {

/// Has a thread that keeps reports in order, apart from those that answer: it removes what is over, counts
/// the directory, and writes scores that could not be written at once.
class ReportKeeper {
public:
    static constexpr std::chrono::seconds Interval{10};

    /// All must outlive the keeper. `clock` is in ms since 1970.
    ReportKeeper(ReportDirectory& directory, ScoreBook& scores, const std::function<qint64()>& clock);
    ~ReportKeeper();

private:
    void run();
    void look();
    void warn();

    ReportDirectory& m_directory;
    ScoreBook& m_scores;
    const std::function<qint64()> m_clock;
    qint64 m_tidiedMs;
    std::chrono::steady_clock::time_point m_nextCount;
    bool m_isWarned = false;
    std::mutex m_mutex;
    std::condition_variable m_condition;
    bool m_isEnding = false;
    std::thread m_thread;
};

}  // namespace StoreServer
