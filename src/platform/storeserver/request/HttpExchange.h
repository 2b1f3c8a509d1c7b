#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "storeserver/request/RequestBody.h"

namespace StoreServer {

/// Turns the head of a request, and its body if it has one, into the bytes of its answer, with httplib's
/// parser and writer, but without its sockets and threads. For one thread at a time.
class HttpExchange {
public:
    using Handler = std::function<StoreAnswer(const StoreRequest&)>;

    /// Without a taker no body is read.
    explicit HttpExchange(Handler handler, BodyTaker taker = {});
    ~HttpExchange();

    /// What shall take the body that a head announces; null if nothing shall. `peer` is the address at the
    /// other end of the connection, in numbers.
    std::unique_ptr<RequestBody> bodyOf(std::string_view head, size_t length, const std::string& peer);
    /// `head` is complete and not malformed (RequestHead), and so is the body, null if there is none. Appends
    /// the answer; false if the connection ends with it.
    bool answer(std::string_view head, RequestBody* body, const std::string& peer, std::string& output);
    /// The answer to bytes that are no request: 400, 413, 414, 431, 503. The connection ends with it.
    static std::string refusal(int status);

private:
    class Parser;
    Handler m_handler;
    BodyTaker m_taker;
    std::unique_ptr<Parser> m_parser;
};

}  // namespace StoreServer
