#include "storeserver/request/StoreAddress.h"

#include <algorithm>

namespace StoreServer {

namespace {

constexpr size_t MaximumHostLength = 255;
constexpr size_t MaximumAddressLength = 1000;

bool isPlain(char character) {
    return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z') ||
           (character >= '0' && character <= '9') || character == '.' || character == '-';
}

bool isDigit(char character) {
    return character >= '0' && character <= '9';
}

bool isPort(const std::string& text) {
    return !text.empty() && text.size() <= 5 && std::all_of(text.begin(), text.end(), isDigit);
}

bool isSixthVersion(const std::string& text) {
    return text.size() > 2 && std::all_of(text.begin(), text.end(), [](char character) {
               return character == ':' || (isPlain(character) && character != '-');
           });
}

}  // namespace

bool isHost(const std::string& text) {
    if (text.empty() || text.size() > MaximumHostLength)
        return false;
    if (text.front() == '[') {
        const size_t end = text.find(']');
        if (end == std::string::npos || !isSixthVersion(text.substr(1, end - 1)))
            return false;
        return end + 1 == text.size() || (text[end + 1] == ':' && isPort(text.substr(end + 2)));
    }
    const size_t colon = text.find(':');
    const std::string name = text.substr(0, colon);
    return !name.empty() && std::all_of(name.begin(), name.end(), isPlain) &&
           (colon == std::string::npos || isPort(text.substr(colon + 1)));
}

bool StoreAddress::set(const std::string& address) {
    const size_t scheme = address.rfind("https://", 0) == 0 ? 8 : address.rfind("http://", 0) == 0 ? 7 : 0;
    if (scheme == 0 || address.size() > MaximumAddressLength)
        return false;
    const size_t slash = std::min(address.find('/', scheme), address.size());
    const std::string path = address.substr(slash);
    const bool isPath = std::all_of(path.begin(), path.end(), [](char character) {
        return isPlain(character) || character == '/' || character == '_' || character == '~';
    });
    if (!isHost(address.substr(scheme, slash - scheme)) || !isPath || (!path.empty() && path.back() == '/'))
        return false;
    m_address = address;
    m_path = path;
    return true;
}

std::string StoreAddress::of(const StoreRequest& request) const {
    if (isSet() || !isHost(request.host))
        return m_address;
    return (request.scheme == "https" ? "https://" : "http://") + request.host;
}

std::string StoreAddress::pathBelow(const std::string& path) const {
    // A client may know the store with a slash at the end.
    std::string single = path;
    single.erase(std::unique(single.begin(), single.end(),
                             [](char left, char right) { return left == '/' && right == '/'; }),
                 single.end());
    const bool isBelow = !m_path.empty() && single.rfind(m_path + '/', 0) == 0;
    return isBelow ? single.substr(m_path.size()) : single;
}

}  // namespace StoreServer
