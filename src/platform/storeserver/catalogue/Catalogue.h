#pragma once

#include <deque>
#include <string>

#include "storeserver/catalogue/CatalogueReader.h"
#include "storeserver/data/StoreRecords.h"

namespace StoreServer {

/// One state of the store, which never changes. Whoever answers a request holds it until the answer is made,
/// while a newer state may already serve others.
class Catalogue {
public:
    /// Opens the file for so many readers, after which it may be removed. Throws SqlError.
    Catalogue(const QString& file, int readers, const QList<CategoryRecord>& categories,
              const QList<IssueTypeRecord>& issueTypes);

    /// Each reader is used by one thread at a time.
    CatalogueReader& reader(int index) const { return m_readers[size_t(index)]; }
    /// JSON objects with commas between them, in the order of the categories.
    const std::string& categories(Language language) const {
        return language == Language::Chinese ? m_chinese : m_english;
    }
    /// JSON objects with commas between them, each in both languages.
    const std::string& issueTypes() const { return m_issueTypes; }
    int categoryCount() const { return m_categoryCount; }
    long long appCount() const { return m_appCount; }

private:
    mutable std::deque<CatalogueReader> m_readers;
    std::string m_english;
    std::string m_chinese;
    std::string m_issueTypes;
    int m_categoryCount;
    long long m_appCount = 0;
};

}  // namespace StoreServer
