#pragma once

#include <QSet>
#include <map>

namespace StoreServer {

/// The nounces of the last time, so that a signed request is taken only once. For one thread at a time. How
/// many of them one client has is up to its tokens.
class NounceLedger {
public:
    /// A request is good for so long on either side of this clock.
    static constexpr qint64 WindowMs = 10 * 60 * 1000;
    static constexpr int MostNounces = 100000;

    enum class Verdict { Fresh, Used, OutOfTime, Full };
    /// Times in ms since 1970, that of the request as it was signed.
    Verdict verdict(const QString& nounce, qint64 signedMs, qint64 nowMs);
    /// Notes a fresh one.
    void enter(const QString& nounce, qint64 nowMs);

private:
    void forget(qint64 nowMs);

    QSet<QString> m_known;
    std::multimap<qint64, QString> m_ends;  // from when on the request of a nounce is out of time
};

}  // namespace StoreServer
