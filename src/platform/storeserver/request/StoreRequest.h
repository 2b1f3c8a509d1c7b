#pragma once

#include <map>
#include <string>

namespace StoreServer {

/// A request as the parser of HTTP hands it on, all parts decoded. None of them is checked.
struct StoreRequest {
    std::string method;
    std::string path;
    std::multimap<std::string, std::string> parameters;
    std::string language;                       ///< X-VESK-Language, such as "zh_CN"
    std::string host;                           ///< Host
    std::string scheme;                         ///< X-Forwarded-Proto, as a web server in front sets it
    std::string client;                         ///< clientAddress()
    std::map<std::string, std::string> device;  ///< the headers of deviceHeaders() that have a value

    std::string parameter(const std::string& name) const {
        const auto found = parameters.find(name);
        return found == parameters.end() ? std::string() : found->second;
    }
};

struct StoreAnswer {
    int status = 200;
    std::string contentType;
    std::string body;
    std::string cacheControl;
    std::string allow = "GET, HEAD";  ///< the methods that are, with status 405
    int retryAfterSeconds = 0;        ///< 0 says nothing
};

}  // namespace StoreServer
