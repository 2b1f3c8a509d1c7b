#include "storeserver/request/HttpExchange.h"

#include <httplib.h>

#include <QtGlobal>
#include <algorithm>

#include "storeserver/request/ClientAddress.h"
#include "storeserver/request/RequestHead.h"

namespace StoreServer {

namespace {

constexpr time_t KeepAliveSeconds = 60;      // as the connection's own limit
constexpr size_t KeepAliveRequests = 10000;  // only told, never counted

/// One request in, one answer out.
class MemoryStream : public httplib::Stream {
public:
    MemoryStream(std::string_view input, std::string& output) : m_input(input), m_output(output) {}

    bool is_readable() const override { return true; }
    bool is_writable() const override { return true; }
    ssize_t read(char* target, size_t size) override {
        const size_t count = m_input.copy(target, size);
        m_input.remove_prefix(count);
        return ssize_t(count);
    }
    ssize_t write(const char* source, size_t size) override {
        m_output.append(source, size);
        return ssize_t(size);
    }
    void get_remote_ip_and_port(std::string&, int&) const override {}
    void get_local_ip_and_port(std::string&, int&) const override {}
    socket_t socket() const override { return INVALID_SOCKET; }

private:
    std::string_view m_input;
    std::string& m_output;
};

StoreRequest requestOf(const httplib::Request& request, const std::string& peer) {
    // The last is the nearest web server's; a client may have sent some of its own.
    const size_t forwards = std::max<size_t>(request.get_header_value_count("X-Forwarded-For"), 1);
    StoreRequest result{request.method,
                        request.path,
                        request.params,
                        request.get_header_value("X-VESK-Language"),
                        request.get_header_value("Host"),
                        request.get_header_value("X-Forwarded-Proto"),
                        clientAddress(peer, request.get_header_value("X-Forwarded-For", forwards - 1)),
                        {}};
    const std::vector<std::string>& names = RequestHead::deviceHeaders();
    for (const auto& [name, value] : request.headers) {
        const std::string lower = RequestHead::lowered(name);
        if (!value.empty() && std::find(names.begin(), names.end(), lower) != names.end())
            result.device.emplace(lower, value);
    }
    return result;
}

void write(StoreAnswer&& answer, httplib::Response& response) {
    response.status = answer.status;
    response.body = std::move(answer.body);
    response.set_header("Content-Type", answer.contentType);
    response.set_header("Cache-Control", answer.cacheControl);
    response.set_header("Vary", "X-VESK-Language, Host, X-Forwarded-Proto");
    response.set_header("Accept-Ranges", "none");
    response.set_header("X-Content-Type-Options", "nosniff");
    // An icon that somebody opens as a page of this server must not do anything.
    response.set_header("Content-Security-Policy", "default-src 'none'; style-src 'unsafe-inline'; sandbox");
    if (answer.status == 405)
        response.set_header("Allow", answer.allow);
    if (answer.retryAfterSeconds > 0)
        response.set_header("Retry-After", std::to_string(answer.retryAfterSeconds));
}

}  // namespace

class HttpExchange::Parser : public httplib::Server {
public:
    Parser() {
        set_keep_alive_timeout(KeepAliveSeconds);
        set_keep_alive_max_count(KeepAliveRequests);
        set_pre_routing_handler([this](const httplib::Request& request, httplib::Response& response) {
            m_isParsed = true;
            write((*m_handler)(requestOf(request, m_peer)), response);
            return HandlerResponse::Handled;
        });
        set_exception_handler([](const httplib::Request&, httplib::Response& response, std::exception_ptr) {
            qWarning("a request ended with an exception");
            response.status = 500;
        });
    }

    bool answer(std::string_view head, const std::string& peer, const HttpExchange::Handler& handler,
                std::string& output) {
        MemoryStream stream(head, output);
        bool isClosed = false;
        m_isParsed = false;
        m_peer = peer;
        m_handler = &handler;
        // What is no request is answered as well, but whatever follows it is not trusted.
        return process_request(stream, false, isClosed, nullptr) && !isClosed && m_isParsed;
    }

private:
    bool m_isParsed = false;
    std::string m_peer;
    const HttpExchange::Handler* m_handler = nullptr;  ///< of the request that is parsed
};

HttpExchange::HttpExchange(Handler handler, BodyTaker taker)
    : m_handler(std::move(handler)), m_taker(std::move(taker)), m_parser(std::make_unique<Parser>()) {}

HttpExchange::~HttpExchange() = default;

std::unique_ptr<RequestBody> HttpExchange::bodyOf(std::string_view head, size_t length,
                                                  const std::string& peer) {
    std::unique_ptr<RequestBody> body;
    if (!m_taker)
        return body;
    // What the parser writes is only about the head; the answer comes after the body.
    std::string unused;
    m_parser->answer(
        RequestHead::reduced(head), peer,
        [&](const StoreRequest& request) {
            body = m_taker(request, length);
            return StoreAnswer();
        },
        unused);
    return body;
}

bool HttpExchange::answer(std::string_view head, RequestBody* body, const std::string& peer,
                          std::string& output) {
    if (!body)
        return m_parser->answer(RequestHead::reduced(head), peer, m_handler, output);
    return m_parser->answer(
        RequestHead::reduced(head), peer,
        [body](const StoreRequest& request) { return body->answer(request); }, output);
}

std::string HttpExchange::refusal(int status) {
    const char* reason = status == 413   ? "Payload Too Large"
                         : status == 414 ? "URI Too Long"
                         : status == 431 ? "Request Header Fields Too Large"
                         : status == 503 ? "Service Unavailable"
                                         : "Bad Request";
    return "HTTP/1.1 " + std::to_string(status) + ' ' + reason +
           "\r\nConnection: close\r\nContent-Length: 0\r\n\r\n";
}

}  // namespace StoreServer
