#include "storeserver/reports/NounceLedger.h"

namespace StoreServer {

NounceLedger::Verdict NounceLedger::enter(const QString& nounce, qint64 signedMs, qint64 nowMs) {
    // No difference of times that a client has chosen: it might overflow.
    if (signedMs < nowMs - WindowMs || signedMs > nowMs + WindowMs)
        return Verdict::OutOfTime;
    while (!m_entries.empty() && m_entries.front().forgottenMs < nowMs) {
        m_known.remove(m_entries.front().nounce);
        m_entries.pop_front();
    }
    if (m_known.contains(nounce))
        return Verdict::Used;
    if (m_known.size() >= MostNounces)
        return Verdict::Full;
    m_known.insert(nounce);
    // The longest that any request can be good that came now.
    m_entries.push_back({nounce, nowMs + 2 * WindowMs});
    return Verdict::Fresh;
}

}  // namespace StoreServer
