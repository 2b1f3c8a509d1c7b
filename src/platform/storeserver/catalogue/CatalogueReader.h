#pragma once

#include <array>
#include <optional>
#include <string>
#include <unordered_map>

#include "storeserver/catalogue/ListOrder.h"
#include "storeserver/catalogue/Sql.h"

namespace StoreServer {

enum class Language { English, Chinese };

/// In what form applications are written: JSON objects with texts in a language and icons below an address.
struct Rendering {
    Language language = Language::English;
    std::string iconAddress;  ///< of the icons' directory, with a slash at its end; needs no escapes in JSON
};

/// A part of a list. Pages count from 1.
struct PageQuery {
    int pageIndex = 1;
    int pageSize = 20;
};

struct ListQuery {
    std::optional<long long> category;  ///< all when none
    SortField field = SortField::Updated;
    bool isAscending = false;
    PageQuery page;
};

struct Page {
    std::string items;  ///< JSON objects with commas between them
    long long total = 0;
};

/// Reads one snapshot of the catalogue; for one thread at a time. Prepares statements when they are first
/// used. All methods throw SqlError.
class CatalogueReader {
public:
    /// Opens a file that never changes while it is open. It may be removed afterwards.
    explicit CatalogueReader(const std::string& file);

    Page list(const ListQuery& query, const Rendering& rendering);
    /// The best first: those whose name is what was typed, starts with it, has it; then by installations.
    Page search(const std::string& keyword, const PageQuery& page, const Rendering& rendering);
    /// The application with both, of which one may be missing.
    std::optional<std::string> app(const std::string& appInfoId, std::optional<long long> appId,
                                   const Rendering& rendering);
    std::optional<std::string> manifest(const std::string& appInfoId);
    /// By the name under which it is served.
    std::optional<std::string> icon(const std::string& name);

    long long count() const { return m_total; }

private:
    SqlStatement& prepared(SqlStatement& statement, const std::string& text);
    void appendRecord(std::string& items, long long id, const Rendering& rendering);
    std::optional<std::string> blob(SqlStatement& statement, const std::string& text, const std::string& key);

    SqlDatabase m_database;
    std::array<SqlStatement, 12> m_lists;
    std::array<SqlStatement, 3> m_searches;
    std::array<SqlStatement, 2> m_records;
    std::unordered_map<long long, long long> m_totals;  ///< of categories
    long long m_total = 0;
    SqlStatement m_byKey;
    SqlStatement m_byId;
    SqlStatement m_manifest;
    SqlStatement m_icon;
};

}  // namespace StoreServer
