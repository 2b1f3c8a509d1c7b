#include "storeserver/reports/JsonScan.h"

#include <set>
#include <vector>

namespace StoreServer {

namespace {

/// The text that begins after a quotation mark; moves to its end.
std::string_view readText(std::string_view bytes, size_t& index) {
    const size_t begin = index;
    while (index < bytes.size() && bytes[index] != '"')
        index += bytes[index] == '\\' ? 2 : 1;
    return bytes.substr(begin, index - begin);
}

}  // namespace

bool isParsableJson(std::string_view bytes, size_t maximumDepth) {
    std::vector<std::set<std::string_view>> keys;  // of all objects and lists that are open
    std::string_view last;
    for (size_t index = 0; index < bytes.size(); ++index) {
        switch (bytes[index]) {
            case '"':
                last = readText(bytes, ++index);
                break;
            case '{':
            case '[':
                if (keys.size() >= maximumDepth)
                    return false;
                keys.emplace_back();
                break;
            case '}':
            case ']':
                if (!keys.empty())
                    keys.pop_back();
                break;
            case ':':
                if (last.find('\\') != std::string_view::npos ||
                    (!keys.empty() && !keys.back().insert(last).second))
                    return false;
                break;
            default:
                break;
        }
    }
    return true;
}

}  // namespace StoreServer
