#include "storeserver/reports/NounceLedger.h"

namespace StoreServer {

NounceLedger::Verdict NounceLedger::verdict(const QString& nounce, qint64 signedMs, qint64 nowMs) {
    // No difference of times that a client has chosen: it might overflow.
    if (signedMs < nowMs - WindowMs || signedMs > nowMs + WindowMs)
        return Verdict::OutOfTime;
    forget(nowMs);
    if (m_known.contains(nounce))
        return Verdict::Used;
    return m_known.size() < MostNounces ? Verdict::Fresh : Verdict::Full;
}

void NounceLedger::enter(const QString& nounce, qint64 nowMs) {
    m_known.insert(nounce);
    // The longest that any request can be good that came now.
    m_ends.emplace(nowMs + 2 * WindowMs, nounce);
}

void NounceLedger::forget(qint64 nowMs) {
    while (!m_ends.empty() && m_ends.begin()->first < nowMs) {
        m_known.remove(m_ends.begin()->second);
        m_ends.erase(m_ends.begin());
    }
    // Of a time when the clock was ahead. They end as if they had come now.
    const qint64 last = nowMs + 2 * WindowMs;
    while (!m_ends.empty() && m_ends.rbegin()->first > last) {
        auto entry = m_ends.extract(std::prev(m_ends.end()));
        entry.key() = last;
        m_ends.insert(std::move(entry));
    }
}

}  // namespace StoreServer
