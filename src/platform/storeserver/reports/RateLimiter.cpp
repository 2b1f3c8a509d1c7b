#include "storeserver/reports/RateLimiter.h"

#include <algorithm>

namespace StoreServer {

bool RateLimiter::take(const std::string& key, long long nowMs, int count) {
    const auto place = m_places.find(key);
    if (place != m_places.end()) {
        m_buckets.splice(m_buckets.begin(), m_buckets, place->second);
    } else {
        if (m_places.size() >= m_limits.keys) {
            m_places.erase(m_buckets.back().key);
            m_buckets.pop_back();
        }
        m_buckets.push_front({key, double(m_limits.burst), nowMs});
        m_places.emplace(key, m_buckets.begin());
    }
    Bucket& bucket = m_buckets.front();
    const double gained = double(std::max(0LL, nowMs - bucket.since)) / m_limits.refillMs;
    bucket.tokens = std::min(double(m_limits.burst), bucket.tokens + gained);
    bucket.since = nowMs;
    if (bucket.tokens < count)
        return false;
    bucket.tokens -= count;
    return true;
}

void RateLimiter::give(const std::string& key, int count) {
    const auto place = m_places.find(key);
    if (place != m_places.end())
        place->second->tokens = std::min(double(m_limits.burst), place->second->tokens + count);
}

}  // namespace StoreServer
