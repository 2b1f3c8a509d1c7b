#pragma once

#include <optional>

#include "storeserver/catalogue/CatalogueReader.h"
#include "storeserver/request/StoreRequest.h"

namespace StoreServer {

/// The parameters of a request as the catalogue needs them. A parameter that is missing or empty has its
/// default; one that makes no sense is an error.
template <class Value>
struct Parsed {
    Value value;
    std::string error;  ///< for developers of clients; empty if all is well
};

/// Numbers may have the form of a double, such as "1e+06", which is how clients write large ones.
std::optional<long long> wholeNumber(const std::string& text);

/// `pageIndex` from 1, `pageSize` from 1 to 100; what is outside becomes the nearest of these.
Parsed<PageQuery> pageQuery(const StoreRequest& request);
/// `category`, the page, `field` ("update_time", "download_count", "score") and `sort` ("desc", "asc").
Parsed<ListQuery> listQuery(const StoreRequest& request);
/// `keyword`, at most 100 characters.
Parsed<std::string> keyword(const StoreRequest& request);

Language languageOf(const StoreRequest& request);

}  // namespace StoreServer
