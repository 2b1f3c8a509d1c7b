#include "storeserver/catalogue/CatalogueReader.h"

#include <QUrl>

#include "storeserver/catalogue/SearchText.h"

namespace StoreServer {

namespace {

const char Settings[] =
    "PRAGMA query_only = ON; PRAGMA temp_store = MEMORY; PRAGMA cache_size = -2000;"
    "PRAGMA mmap_size = 67108864;";

constexpr size_t RecordBytes = 512;  // about

// Nobody else writes the file, so that it needs no locks.
std::string addressOf(const std::string& file) {
    return "file:" + QUrl::toPercentEncoding(QString::fromStdString(file), "/").toStdString() +
           "?immutable=1";
}

std::string listStatement(const ListQuery& query) {
    return std::string("SELECT id FROM apps") + (query.category ? " WHERE category = ?3" : "") +
           " ORDER BY " + listOrder(query.field, query.isAscending) + ", id LIMIT ?1 OFFSET ?2";
}

std::string searchStatement(bool hasWords, bool hasTriples) {
    // A cross join, so that the index is always read first.
    const std::string words = "words CROSS JOIN apps ON id = words.rowid";
    const std::string triples = "triples CROSS JOIN apps ON id = triples.rowid";
    const std::string both =
        words + " WHERE words MATCH ?1 AND id IN (SELECT rowid FROM triples WHERE triples MATCH ?2)";
    const std::string found = hasWords && hasTriples ? both
                              : hasWords             ? words + " WHERE words MATCH ?1"
                                                     : triples + " WHERE triples MATCH ?2";
    return "SELECT id FROM " + found +
           " ORDER BY CASE WHEN en = ?3 OR zh = ?3 THEN 0"
           " WHEN substr(en, 1, length(?3)) = ?3 OR substr(zh, 1, length(?3)) = ?3 THEN 1"
           " WHEN instr(en, ?3) OR instr(zh, ?3) THEN 2 ELSE 3 END, installations DESC, id";
}

long long offsetOf(const PageQuery& page) {
    return (page.pageIndex - 1LL) * page.pageSize;
}

}  // namespace

CatalogueReader::CatalogueReader(const std::string& file)
    : m_database(addressOf(file), SQLITE_OPEN_READONLY | SQLITE_OPEN_URI | SQLITE_OPEN_NOMUTEX) {
    m_database.run(Settings);
    SqlStatement select(m_database, "SELECT category, count(*) FROM apps GROUP BY category");
    while (select.step()) {
        m_totals[select.number(0)] = select.number(1);
        m_total += select.number(1);
    }
}

SqlStatement& CatalogueReader::prepared(SqlStatement& statement, const std::string& text) {
    if (!statement.isPrepared())
        statement = SqlStatement(m_database, text);
    statement.reset();
    return statement;
}

void CatalogueReader::appendRecord(std::string& items, long long id, const Rendering& rendering) {
    const bool isChinese = rendering.language == Language::Chinese;
    SqlStatement& select =
        prepared(m_records[isChinese],
                 std::string("SELECT icon, ") + (isChinese ? "zh" : "en") + " FROM records WHERE id = ?1");
    if (!select.bind(1, id).step())
        throw SqlError("an application without a record");
    const std::string_view icon = select.text(0);
    items += items.empty() ? "{\"iconSaveKey\":\"" : ",{\"iconSaveKey\":\"";
    if (!icon.empty())
        items.append(rendering.iconAddress).append(icon);
    items += "\",";
    items += select.text(1).substr(1);
    select.reset();
}

Page CatalogueReader::list(const ListQuery& query, const Rendering& rendering) {
    const bool hasCategory = query.category.has_value();
    const size_t index = size_t(query.field) * 4 + (query.isAscending ? 2 : 0) + (hasCategory ? 1 : 0);
    Page page;
    const auto known = hasCategory ? m_totals.find(*query.category) : m_totals.end();
    page.total = !hasCategory ? m_total : known != m_totals.end() ? known->second : 0;
    SqlStatement& select = prepared(m_lists[index], listStatement(query));
    select.bind(1, query.page.pageSize).bind(2, offsetOf(query.page));
    if (hasCategory)
        select.bind(3, *query.category);
    page.items.reserve(size_t(query.page.pageSize) * RecordBytes);
    while (select.step())
        appendRecord(page.items, select.number(0), rendering);
    select.reset();
    return page;
}

Page CatalogueReader::search(const std::string& keyword, const PageQuery& page, const Rendering& rendering) {
    const QString folded = SearchText::folded(QString::fromStdString(keyword)).simplified();
    const SearchText::Query query = SearchText::query(folded);
    if (query.isEmpty())
        return {};
    const std::string typed = folded.toStdString();
    // A cross join, so that the index is always read first.
    const std::string words = query.words.toStdString();
    const std::string triples = query.triples.toStdString();
    const size_t index = words.empty() ? 0 : triples.empty() ? 1 : 2;
    SqlStatement& select = prepared(m_searches[index], searchStatement(!words.empty(), !triples.empty()));
    if (!words.empty())
        select.bind(1, words);
    if (!triples.empty())
        select.bind(2, triples);
    select.bind(3, typed);
    Page result;
    const long long first = offsetOf(page);
    for (; select.step(); ++result.total) {
        if (result.total >= first && result.total < first + page.pageSize)
            appendRecord(result.items, select.number(0), rendering);
    }
    select.reset();
    return result;
}

std::optional<std::string> CatalogueReader::app(const std::string& appInfoId, std::optional<long long> appId,
                                                const Rendering& rendering) {
    if (appInfoId.empty() && !appId)
        return std::nullopt;
    SqlStatement& select = appInfoId.empty() ? prepared(m_byId, "SELECT id FROM apps WHERE id = ?1")
                                             : prepared(m_byKey, "SELECT id FROM apps WHERE key = ?1");
    if (appInfoId.empty())
        select.bind(1, *appId);
    else
        select.bind(1, appInfoId);
    std::optional<std::string> record;
    if (select.step() && (!appId || *appId == select.number(0))) {
        record.emplace();
        appendRecord(*record, select.number(0), rendering);
    }
    select.reset();
    return record;
}

std::optional<std::string> CatalogueReader::manifest(const std::string& appInfoId) {
    return blob(m_manifest, "SELECT text FROM manifests WHERE id = (SELECT id FROM apps WHERE key = ?1)",
                appInfoId);
}

std::optional<std::string> CatalogueReader::icon(const std::string& name) {
    return blob(m_icon, "SELECT data FROM icons WHERE name = ?1", name);
}

std::optional<std::string> CatalogueReader::blob(SqlStatement& statement, const std::string& text,
                                                 const std::string& key) {
    SqlStatement& select = prepared(statement, text);
    std::optional<std::string> content;
    if (select.bind(1, key).step())
        content = std::string(select.text(0));
    select.reset();
    return content;
}

}  // namespace StoreServer
