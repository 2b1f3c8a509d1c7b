#pragma once

#include <QSet>
#include <deque>

namespace StoreServer {

/// The nounces of the last time, so that a signed request is taken only once. For one thread at a time.
class NounceLedger {
public:
    /// A request is good for so long on either side of this clock.
    static constexpr qint64 WindowMs = 10 * 60 * 1000;
    static constexpr int MostNounces = 100000;

    enum class Verdict { Fresh, Used, OutOfTime, Full };
    /// Notes a fresh one. Times in ms since 1970, that of the request as it was signed.
    Verdict enter(const QString& nounce, qint64 signedMs, qint64 nowMs);

private:
    struct Entry {
        QString nounce;
        qint64 forgottenMs;  ///< from when on its request is out of time
    };

    QSet<QString> m_known;
    std::deque<Entry> m_entries;  // in the order in which they came
};

}  // namespace StoreServer
