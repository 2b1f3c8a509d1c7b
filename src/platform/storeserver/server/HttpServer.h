#pragma once

#include <deque>
#include <functional>
#include <string>

#include "storeserver/server/ServerThread.h"

namespace StoreServer {

/// A web server on one TCP address, made of some threads that share the connections. Lives in the main
/// thread.
class HttpServer {
public:
    /// Makes the handler of a thread, whose index counts from 0.
    using HandlerMaker = std::function<HttpExchange::Handler(int thread)>;

    /// Ends all connections when it is destroyed, within the limit for closing.
    ~HttpServer() { stop(); }

    /// `host` is an address of this machine in numbers, port 0 any that is free. On failure an English text;
    /// another address may be tried then.
    std::string listen(const std::string& host, int port);
    /// Throws std::system_error if there are no descriptors or threads for it; stop() ends what has begun.
    void start(int threads, const HandlerMaker& handlerOf, const ServerLimits& limits = {},
               const BodyTaker& taker = {});
    void stop();

    int port() const { return m_port; }
    const ServerActivity& activity() const { return m_activity; }
    /// A use of the server that is no request.
    void touch() { m_activity.touch(); }

private:
    Fenk::OwnedFd m_listener;
    int m_port = 0;
    ServerActivity m_activity;
    std::deque<ServerThread> m_threads;
};

}  // namespace StoreServer
