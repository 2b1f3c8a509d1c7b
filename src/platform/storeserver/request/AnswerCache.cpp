#include "storeserver/request/AnswerCache.h"

namespace StoreServer {

namespace {

constexpr size_t EntryBytes = 256;   // of the containers and small texts, about
constexpr size_t LargestShare = 16;  // an answer may have this part of the whole

}  // namespace

const StoreAnswer* AnswerCache::find(const std::shared_ptr<const Catalogue>& catalogue,
                                     const std::string& key) {
    if (catalogue != m_catalogue.lock()) {
        m_catalogue = catalogue;
        m_places.clear();
        m_entries.clear();
        m_bytes = 0;
    }
    const auto place = m_places.find(key);
    if (place == m_places.end())
        return nullptr;
    m_entries.splice(m_entries.begin(), m_entries, place->second);
    return &m_entries.front().answer;
}

void AnswerCache::insert(const std::string& key, const StoreAnswer& answer) {
    const size_t bytes = sizeOf(key, answer);
    if (answer.status != 200 || bytes > m_maximumBytes / LargestShare || m_places.count(key) > 0)
        return;
    m_bytes += bytes;
    while (m_bytes > m_maximumBytes)
        drop(std::prev(m_entries.end()));
    m_entries.push_front({key, answer});
    m_places.emplace(key, m_entries.begin());
}

void AnswerCache::drop(Entries::iterator entry) {
    m_bytes -= sizeOf(entry->key, entry->answer);
    m_places.erase(entry->key);
    m_entries.erase(entry);
}

size_t AnswerCache::sizeOf(const std::string& key, const StoreAnswer& answer) {
    return EntryBytes + 2 * key.size() + answer.body.size();
}

}  // namespace StoreServer
