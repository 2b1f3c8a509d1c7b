#include "storeserver/request/StoreAnswers.h"

#include <QtGlobal>

#include "storeserver/request/StoreParameters.h"

namespace StoreServer {

namespace {

const char Json[] = "application/json; charset=utf-8";
const std::string ClientPath = "/vesk/client/";
const std::string ManifestPath = ClientPath + "downloadYml/";
const std::string IconPath = "/icons/";
const char MissingApp[] = "the application does not exist";
constexpr int MissingCode = 4000;

/// What all functions below work on.
struct Context {
    const StoreRequest& request;
    const Catalogue& catalogue;
    CatalogueReader& reader;
    Rendering rendering;
};

StoreAnswer json(int status, std::string body) {
    StoreAnswer answer;
    answer.status = status;
    answer.contentType = Json;
    answer.body = std::move(body);
    answer.cacheControl = "no-cache";
    return answer;
}

// The texts are our own and need no escapes.
StoreAnswer refusal(int status, const std::string& text) {
    return json(status, R"({"result":false,"code":")" + std::to_string(status) + R"(","msg":")" + text +
                            R"(","err":")" + text + "\"}");
}

StoreAnswer table(const std::string& items, const PageQuery& page, long long total) {
    static const std::string begin = R"({"result":true,"code":200,"msg":"","err":"","data":{"list":[)";
    const std::string end = R"(],"pagination":{"total":)" + std::to_string(total) + R"(,"pageIndex":)" +
                            std::to_string(page.pageIndex) + R"(,"pageSize":)" +
                            std::to_string(page.pageSize) + "}}}";
    std::string body;
    body.reserve(begin.size() + items.size() + end.size());
    body.append(begin).append(items).append(end);
    return json(200, std::move(body));
}

StoreAnswer categories(const Context& context) {
    const int count = context.catalogue.categoryCount();
    return table(context.catalogue.categories(context.rendering.language), {1, count}, count);
}

StoreAnswer apps(const Context& context) {
    const Parsed<ListQuery> query = listQuery(context.request);
    if (!query.error.empty())
        return refusal(400, query.error);
    const Page page = context.reader.list(query.value, context.rendering);
    return table(page.items, query.value.page, page.total);
}

StoreAnswer search(const Context& context) {
    const Parsed<PageQuery> query = pageQuery(context.request);
    const Parsed<std::string> text = keyword(context.request);
    if (!query.error.empty() || !text.error.empty())
        return refusal(400, query.error.empty() ? text.error : query.error);
    const Page page = context.reader.search(text.value, query.value, context.rendering);
    return table(page.items, query.value, page.total);
}

StoreAnswer appInfo(const Context& context) {
    const std::string idText = context.request.parameter("appId");
    const std::optional<long long> id = wholeNumber(idText);
    std::optional<std::string> record;
    if (idText.empty() || id)
        record = context.reader.app(context.request.parameter("appInfoId"), id, context.rendering);
    if (!record)
        return json(200, R"({"result":false,"code":)" + std::to_string(MissingCode) + R"(,"msg":")" +
                             MissingApp + R"(","err":")" + MissingApp + R"(","data":{}})");
    return json(200, R"({"result":true,"code":200,"msg":"","err":"","data":{"AppInfo":)" + *record + "}}");
}

StoreAnswer manifest(const Context& context, const std::string& appInfoId) {
    std::optional<std::string> text = context.reader.manifest(appInfoId);
    if (!text)
        return json(404, R"({"result":false,"code":)" + std::to_string(MissingCode) + R"(,"data":{"msg":")" +
                             MissingApp + "\"}}");
    StoreAnswer answer = json(200, std::move(*text));
    answer.contentType = "application/yaml; charset=utf-8";
    return answer;
}

// The name has a hash of the content, so that it never stands for another.
StoreAnswer icon(const Context& context, const std::string& name) {
    std::optional<std::string> data = context.reader.icon(name);
    if (!data)
        return refusal(404, "there is no such icon");
    StoreAnswer answer = json(200, std::move(*data));
    answer.contentType = name.back() == 'g' && name[name.size() - 2] == 'n' ? "image/png" : "image/svg+xml";
    answer.cacheControl = "public, max-age=31536000, immutable";
    return answer;
}

StoreAnswer routed(const Context& context, const std::string& path) {
    if (path == ClientPath + "apps")
        return apps(context);
    if (path == ClientPath + "search")
        return search(context);
    if (path == ClientPath + "categories")
        return categories(context);
    if (path == ClientPath + "appInfo")
        return appInfo(context);
    if (path.rfind(ManifestPath, 0) == 0)
        return manifest(context, path.substr(ManifestPath.size()));
    if (path.rfind(IconPath, 0) == 0)
        return icon(context, path.substr(IconPath.size()));
    return refusal(404, "there is nothing at this path");
}

}  // namespace

StoreAnswer storeAnswer(const StoreRequest& request, const StoreAddress& address, const Catalogue& catalogue,
                        int reader) {
    if (request.method != "GET" && request.method != "HEAD")
        return refusal(405, "only GET and HEAD are answered");
    const std::string base = address.of(request);
    if (base.empty())
        return refusal(400, "the Host header is missing or invalid");
    const Context context{
        request, catalogue, catalogue.reader(reader), {languageOf(request), base + IconPath}};
    try {
        return routed(context, address.pathBelow(request.path));
    } catch (const SqlError& error) {
        qWarning("a request failed: %s", error.what());
        return refusal(500, "the catalogue cannot be read");
    }
}

std::string answerKey(const StoreRequest& request, const StoreAddress& address) {
    const std::string path = address.pathBelow(request.path);
    const std::string base = address.of(request);
    const bool isList = path == ClientPath + "apps";
    if ((!isList && path != ClientPath + "search") || base.empty() ||
        (request.method != "GET" && request.method != "HEAD"))
        return {};
    // Of good requests only the keyword may have a line feed.
    std::string key = (isList ? "apps\n" : "search\n") + base;
    key += languageOf(request) == Language::Chinese ? "\nzh" : "\nen";
    for (const char* name : {"pageIndex", "pageSize", isList ? "category" : "keyword"})
        key += '\n' + request.parameter(name);
    if (isList)
        key += '\n' + request.parameter("field") + '\n' + request.parameter("sort");
    return key;
}

}  // namespace StoreServer
