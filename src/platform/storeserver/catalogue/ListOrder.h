#pragma once

#include <string>

namespace StoreServer {

enum class SortField { Updated, Installations, Score };

/// The columns of a list's order in SQL, which an index has as well so that pages are read without sorting.
/// Of equals the recommended ones come first in either direction; the id decides among the rest.
inline std::string listOrder(SortField field, bool isAscending) {
    const std::string direction = isAscending ? " ASC" : " DESC";
    const std::string column = field == SortField::Updated ? "updated" + direction + ", "
                               : field == SortField::Score ? "score" + direction + ", "
                                                           : "";
    return column + "installations" + direction + ", rank";
}

}  // namespace StoreServer
