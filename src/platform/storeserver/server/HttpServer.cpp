#include "storeserver/server/HttpServer.h"

#include <netdb.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/resource.h>
#include <sys/socket.h>

#include <QtGlobal>
#include <algorithm>
#include <cerrno>
#include <cstring>
#include <memory>

namespace StoreServer {

namespace {

constexpr int Backlog = 1024;
constexpr int SendBufferBytes = 64 * 1024;  // of the system, for each connection
constexpr rlim_t SpareDescriptors = 64;
constexpr rlim_t DescriptorsOfThread = 4;  // its events and a catalogue, of which there are two for a while

struct AddressList {
    explicit AddressList(const std::string& host, int port) {
        addrinfo hints = {};
        hints.ai_family = AF_UNSPEC;
        hints.ai_socktype = SOCK_STREAM;
        hints.ai_flags = AI_NUMERICHOST | AI_NUMERICSERV | AI_PASSIVE;
        error = ::getaddrinfo(host.c_str(), std::to_string(port).c_str(), &hints, &first);
    }
    ~AddressList() {
        if (first)
            ::freeaddrinfo(first);
    }
    AddressList(const AddressList&) = delete;
    AddressList& operator=(const AddressList&) = delete;

    addrinfo* first = nullptr;
    int error = 0;
};

int portOf(int fd) {
    sockaddr_storage address = {};
    socklen_t length = sizeof address;
    if (::getsockname(fd, reinterpret_cast<sockaddr*>(&address), &length) != 0)
        return 0;
    return ntohs(address.ss_family == AF_INET6 ? reinterpret_cast<sockaddr_in6&>(address).sin6_port
                                               : reinterpret_cast<sockaddr_in&>(address).sin_port);
}

/// How many descriptors this process may have, of so many that it wants.
rlim_t allowDescriptors(rlim_t count) {
    rlimit limit = {};
    if (::getrlimit(RLIMIT_NOFILE, &limit) != 0 || limit.rlim_cur >= count)
        return count;
    const rlim_t before = limit.rlim_cur;
    limit.rlim_cur = std::min(count, limit.rlim_max);
    return ::setrlimit(RLIMIT_NOFILE, &limit) == 0 ? limit.rlim_cur : before;
}

/// The connections of each thread that the system has descriptors for. The rest of the process keeps its own,
/// or half of very few.
int possibleConnections(rlim_t threads, rlim_t wanted) {
    const rlim_t spare = SpareDescriptors + threads * DescriptorsOfThread;
    const rlim_t allowed = allowDescriptors(threads * wanted + spare);
    const rlim_t left = allowed - std::min(spare, allowed / 2);
    return int(std::clamp<rlim_t>(left / threads, 1, wanted));
}

}  // namespace

std::string HttpServer::listen(const std::string& host, int port) {
    const AddressList addresses(host, port);
    if (addresses.error != 0)
        return host + " is not an address in numbers: " + ::gai_strerror(addresses.error);
    const addrinfo& address = *addresses.first;
    Fenk::OwnedFd listener(
        ::socket(address.ai_family, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, address.ai_protocol));
    const int yes = 1;
    if (!listener.isValid() ||
        ::setsockopt(listener.get(), SOL_SOCKET, SO_REUSEADDR, &yes, sizeof yes) != 0 ||
        ::setsockopt(listener.get(), IPPROTO_TCP, TCP_NODELAY, &yes, sizeof yes) != 0 ||
        ::setsockopt(listener.get(), SOL_SOCKET, SO_SNDBUF, &SendBufferBytes, sizeof SendBufferBytes) != 0 ||
        ::bind(listener.get(), address.ai_addr, address.ai_addrlen) != 0 ||
        ::listen(listener.get(), Backlog) != 0)
        return host + " port " + std::to_string(port) + " cannot be listened on: " + std::strerror(errno);
    m_port = portOf(listener.get());
    m_listener = std::move(listener);
    return {};
}

void HttpServer::start(int threads, const HandlerMaker& handlerOf, const ServerLimits& limits,
                       const BodyTaker& taker) {
    ServerLimits possible = limits;
    possible.connections = possibleConnections(rlim_t(threads), rlim_t(limits.connections));
    if (possible.connections < limits.connections)
        qWarning("the system's limit of descriptors allows %d connections for each of %d threads",
                 possible.connections, threads);
    for (int index = 0; index < threads; ++index)
        m_threads.emplace_back(m_listener.get(), handlerOf(index), taker, possible, m_activity);
}

void HttpServer::stop() {
    for (ServerThread& thread : m_threads)
        thread.stop();
    m_threads.clear();
    m_listener.reset();
}

}  // namespace StoreServer
