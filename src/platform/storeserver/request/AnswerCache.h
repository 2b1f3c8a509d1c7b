#pragma once

#include <list>
#include <memory>
#include <string>
#include <unordered_map>

#include "storeserver/catalogue/Catalogue.h"
#include "storeserver/request/StoreRequest.h"

namespace StoreServer {

/// Answers that were given lately, since most clients ask for the same lists. The least recently used go when
/// the answers become too large together, and all when the catalogue changes. For one thread at a time.
class AnswerCache {
public:
    explicit AnswerCache(size_t maximumBytes) : m_maximumBytes(maximumBytes) {}

    /// Null if there is none of this catalogue. Valid until the next call.
    const StoreAnswer* find(const std::shared_ptr<const Catalogue>& catalogue, const std::string& key);
    /// Keeps answers that are good and not too large.
    void insert(const std::string& key, const StoreAnswer& answer);

private:
    struct Entry {
        std::string key;
        StoreAnswer answer;
    };
    using Entries = std::list<Entry>;

    void drop(Entries::iterator entry);
    static size_t sizeOf(const std::string& key, const StoreAnswer& answer);

    const size_t m_maximumBytes;
    size_t m_bytes = 0;
    std::weak_ptr<const Catalogue> m_catalogue;  // an old one must not be kept for this
    Entries m_entries;                           // the most recently used first
    std::unordered_map<std::string, Entries::iterator> m_places;
};

}  // namespace StoreServer
