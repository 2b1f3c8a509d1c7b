#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "storeserver/request/StoreRequest.h"

namespace StoreServer {

/// Turns the head of a request into the bytes of its answer, with httplib's parser and writer, but without
/// its sockets and threads. For one thread at a time.
class HttpExchange {
public:
    using Handler = std::function<StoreAnswer(const StoreRequest&)>;

    explicit HttpExchange(Handler handler);
    ~HttpExchange();

    /// `head` is complete and not malformed (RequestHead). Appends the answer; false if the connection ends
    /// with it.
    bool answer(std::string_view head, std::string& output);
    /// The answer to bytes that are no request: 400, 413, 414, 431, 503. The connection ends with it.
    static std::string refusal(int status);

private:
    class Parser;
    std::unique_ptr<Parser> m_parser;
};

}  // namespace StoreServer
