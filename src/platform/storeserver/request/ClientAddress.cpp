#include "storeserver/request/ClientAddress.h"

#include <arpa/inet.h>

#include <algorithm>
#include <array>
#include <optional>

namespace StoreServer {

namespace {

using Bytes = std::array<unsigned char, sizeof(in6_addr)>;

constexpr size_t NetworkBytes = 8;
constexpr Bytes Mapped = {0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0xFF, 0xFF};
constexpr size_t MappedBytes = 12;

/// Addresses of the fourth version are mapped into the sixth.
std::optional<Bytes> parsed(const std::string& text) {
    Bytes bytes = Mapped;
    if (::inet_pton(AF_INET, text.c_str(), bytes.data() + MappedBytes) == 1)
        return bytes;
    if (::inet_pton(AF_INET6, text.c_str(), bytes.data()) == 1)
        return bytes;
    return std::nullopt;
}

bool isFourth(const Bytes& bytes) {
    return std::equal(bytes.begin(), bytes.begin() + MappedBytes, Mapped.begin());
}

bool isThisMachine(const Bytes& bytes) {
    Bytes last = {};
    last.back() = 1;
    return isFourth(bytes) ? bytes[MappedBytes] == 127 : bytes == last;
}

std::string lastOf(const std::string& list) {
    const size_t comma = list.rfind(',');
    const std::string item = comma == std::string::npos ? list : list.substr(comma + 1);
    const size_t begin = item.find_first_not_of(" \t");
    return begin == std::string::npos ? std::string()
                                      : item.substr(begin, item.find_last_not_of(" \t") - begin + 1);
}

}  // namespace

std::string clientAddress(const std::string& peer, const std::string& forwardedFor) {
    std::optional<Bytes> bytes = parsed(peer);
    if (bytes && isThisMachine(*bytes)) {
        if (const std::optional<Bytes> told = parsed(lastOf(forwardedFor)))
            bytes = told;
    }
    if (!bytes)
        return {};
    std::array<char, INET6_ADDRSTRLEN> text = {};
    if (isFourth(*bytes)) {
        ::inet_ntop(AF_INET, bytes->data() + MappedBytes, text.data(), text.size());
    } else {
        std::fill(bytes->begin() + NetworkBytes, bytes->end(), 0);
        ::inet_ntop(AF_INET6, bytes->data(), text.data(), text.size());
    }
    return text.data();
}

}  // namespace StoreServer
