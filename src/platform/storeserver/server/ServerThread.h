#pragma once

#include <atomic>
#include <list>
#include <thread>
#include <unordered_map>

#include "fenk/system/OwnedFd.h"
#include "storeserver/request/ClientAddress.h"
#include "storeserver/server/Conversation.h"
#include "storeserver/server/ServerLimits.h"

namespace StoreServer {

/// When somebody last sent a request, for a server that ends when it is not used. For all threads.
class ServerActivity {
public:
    ServerActivity() { touch(); }
    void touch() { m_last = std::chrono::steady_clock::now(); }
    std::chrono::steady_clock::duration sinceLast() const {
        return std::chrono::steady_clock::now() - m_last.load();
    }

private:
    std::atomic<std::chrono::steady_clock::time_point> m_last;
};

/// One thread of the server with an event loop of its own. It accepts connections from the socket that all
/// threads share and serves them to their end without ever waiting for a client.
class ServerThread {
public:
    /// `listener` and `activity` must outlive the thread. The handler and the taker of bodies are called in
    /// the thread. Throws std::system_error if the system has no more descriptors.
    ServerThread(int listener, HttpExchange::Handler handler, const BodyTaker& taker,
                 const ServerLimits& limits, ServerActivity& activity);
    /// Ends within the limit for closing.
    ~ServerThread();

    /// Begins the end: no more requests are read, and what is answered is still sent.
    void stop();

private:
    using Clock = std::chrono::steady_clock;

    struct Connection {
        Connection(int descriptor, HttpExchange& exchange, const std::string& peer)
            : fd(descriptor), conversation(exchange, peer), network(clientAddress(peer, {})) {}

        Fenk::OwnedFd fd;
        Conversation conversation;
        Conversation::Phase phase = Conversation::Phase::Idle;
        std::string network;                     ///< that it comes from
        Clock::time_point since = Clock::now();  ///< of the phase; each answer is a phase of its own
        Clock::time_point moved = Clock::now();  ///< when bytes last came or went
        size_t held = 0;                         ///< as it is counted in all that are held
        bool isWatchedForWriting = false;
    };
    using Connections = std::unordered_map<int, Connection>;

    void run();
    int waitMs() const;
    void accept();
    void onNotAccepted(int error);
    bool listen(bool isListening);
    void add(int fd, const std::string& peer);
    void makeRoom();
    std::string crowdedNetwork() const;
    void countHeld(Connection& connection);
    void endLongestHolder();
    Connections::iterator end(Connections::iterator place);
    void handle(int fd, unsigned events);
    bool receive(Connection& connection);
    bool send(Connection& connection);
    void watch(Connection& connection);
    void endLateOnes();
    void beginClosing();
    Clock::duration limitOf(Conversation::Phase phase) const;

    int m_listener;
    HttpExchange m_exchange;
    ServerLimits m_limits;
    ServerActivity& m_activity;
    Fenk::OwnedFd m_epoll;
    Fenk::OwnedFd m_wake;
    Connections m_connections;
    size_t m_held = 0;  ///< bytes of all conversations
    Clock::time_point m_lastSweep = Clock::now();
    Clock::time_point m_nextWarning;
    Clock::time_point m_closingSince;
    bool m_isListening = false;
    bool m_isClosing = false;
    std::atomic<bool> m_isStopped = false;
    std::thread m_thread;
};

}  // namespace StoreServer
