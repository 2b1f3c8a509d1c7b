#include "storeserver/request/StoreParameters.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>

namespace StoreServer {

namespace {

constexpr int MaximumPageSize = 100;
constexpr size_t MaximumKeyword = 100;
constexpr size_t MaximumNumber = 32;
constexpr double LargestExact = 9007199254740992.0;  // 2^53

/// False if there is a value which is no number.
bool readNumber(const StoreRequest& request, const char* name, std::optional<long long>* value) {
    const std::string text = request.parameter(name);
    if (text.empty())
        return true;
    *value = wholeNumber(text);
    return value->has_value();
}

size_t characterCount(const std::string& utf8) {
    return size_t(std::count_if(utf8.begin(), utf8.end(),
                                [](char byte) { return (static_cast<unsigned char>(byte) & 0xC0) != 0x80; }));
}

int bounded(std::optional<long long> number, int fallback, int maximum) {
    return number ? int(std::clamp<long long>(*number, 1, maximum)) : fallback;
}

}  // namespace

std::optional<long long> wholeNumber(const std::string& text) {
    double number = 0;
    const char* end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number);
    if (text.size() > MaximumNumber || error != std::errc() || stop != end || !std::isfinite(number) ||
        std::abs(number) > LargestExact || number != std::floor(number))
        return std::nullopt;
    return static_cast<long long>(number);
}

Parsed<PageQuery> pageQuery(const StoreRequest& request) {
    std::optional<long long> index;
    std::optional<long long> size;
    if (!readNumber(request, "pageIndex", &index))
        return {{}, "pageIndex is not a whole number"};
    if (!readNumber(request, "pageSize", &size))
        return {{}, "pageSize is not a whole number"};
    const PageQuery standard;
    return {{bounded(index, standard.pageIndex, std::numeric_limits<int>::max()),
             bounded(size, standard.pageSize, MaximumPageSize)},
            {}};
}

Parsed<ListQuery> listQuery(const StoreRequest& request) {
    ListQuery query;
    const Parsed<PageQuery> page = pageQuery(request);
    if (!page.error.empty())
        return {query, page.error};
    query.page = page.value;
    if (!readNumber(request, "category", &query.category))
        return {query, "category is not a whole number"};
    const std::string field = request.parameter("field");
    if (field == "download_count")
        query.field = SortField::Installations;
    else if (field == "score")
        query.field = SortField::Score;
    else if (!field.empty() && field != "update_time")
        return {query, "field is not one of update_time, download_count, score"};
    const std::string sort = request.parameter("sort");
    query.isAscending = sort == "asc";
    if (!sort.empty() && sort != "asc" && sort != "desc")
        return {query, "sort is not one of asc, desc"};
    return {query, {}};
}

Parsed<std::string> keyword(const StoreRequest& request) {
    const std::string text = request.parameter("keyword");
    if (characterCount(text) > MaximumKeyword)
        return {{}, "keyword is longer than " + std::to_string(MaximumKeyword) + " characters"};
    return {text, {}};
}

Language languageOf(const StoreRequest& request) {
    return request.language.rfind("zh", 0) == 0 ? Language::Chinese : Language::English;
}

}  // namespace StoreServer
