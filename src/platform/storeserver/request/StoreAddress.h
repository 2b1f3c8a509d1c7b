#pragma once

#include <optional>
#include <string>

#include "storeserver/request/StoreRequest.h"

namespace StoreServer {

/// Where clients reach the store, "https://store.example/path" without a slash at its end.
class StoreAddress {
public:
    /// Without an address it is taken of each request: its Host header.
    StoreAddress() = default;
    /// False, changing nothing, if the text is no such address.
    bool set(const std::string& address);

    bool isSet() const { return !m_address.empty(); }
    /// Empty if the request names no valid host.
    std::string of(const StoreRequest& request) const;
    /// The path below the store's own, with single slashes. A web server in front may pass on the whole path
    /// or its end.
    std::string pathBelow(const std::string& path) const;

private:
    std::string m_address;
    std::string m_path;
};

/// A name or an address of a machine, with or without a port, of characters that need no escapes anywhere.
bool isHost(const std::string& text);

}  // namespace StoreServer
