#pragma once

#include <list>
#include <string>
#include <unordered_map>

namespace StoreServer {

/// A bucket of tokens for each key, which fills up again with time. The keys are bounded: the one that has
/// not been used for the longest time makes room, and would begin with a full bucket. For one thread at a
/// time; times in ms of a clock that may be set.
class RateLimiter {
public:
    struct Limits {
        int burst;     ///< tokens of a full bucket
        int refillMs;  ///< for one token
        size_t keys = 10000;
    };

    explicit RateLimiter(const Limits& limits) : m_limits(limits) {}

    /// Takes tokens; false, taking none, if there are not so many.
    bool take(const std::string& key, long long nowMs, int count = 1);
    /// Gives back tokens that were taken and not needed.
    void give(const std::string& key, int count);

private:
    struct Bucket {
        std::string key;
        double tokens;
        long long since;
    };
    using Buckets = std::list<Bucket>;

    const Limits m_limits;
    Buckets m_buckets;  // the most recently used first
    std::unordered_map<std::string, Buckets::iterator> m_places;
};

}  // namespace StoreServer
