#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "storeserver/request/HttpExchange.h"

namespace StoreServer {

/// The requests and answers of one connection, apart from its socket. Memory is bounded: bytes are wanted
/// only while there is no answer to send, so that at most one head, what its body keeps of itself, and one
/// answer are held.
class Conversation {
public:
    /// What the connection waits for, which decides how long it may.
    enum class Phase {
        Idle,       ///< the next request
        Reading,    ///< the rest of a request's head
        Receiving,  ///< the rest of its body
        Writing,    ///< the client, to take the answer
        Over,       ///< nothing
    };

    /// The exchange must outlive the conversation. `peer` is the client's address in numbers.
    explicit Conversation(HttpExchange& exchange, std::string peer = {})
        : m_exchange(exchange), m_peer(std::move(peer)) {}

    Phase phase() const;
    /// Takes bytes from the client; only in the phases Idle, Reading and Receiving. Any number of them may
    /// have come.
    void receive(std::string_view bytes);
    /// The client sends no more: what it has asked is still answered.
    void finish() { m_isClosing = true; }
    /// Makes the rest of this conversation a refusal.
    void refuse(int status);

    std::string_view output() const { return std::string_view(m_output).substr(m_sent); }
    /// The bytes in memory until the client has sent its whole body, or has taken the whole output.
    size_t held() const { return m_output.size() + (m_body ? m_body->held() : 0); }
    /// So many bytes of the output have been sent.
    void sent(size_t count);

private:
    void answerNext();
    void receiveBody();
    void answer();

    HttpExchange& m_exchange;
    std::string m_peer;
    std::string m_input;
    std::string m_head;  ///< of the request whose body comes
    std::unique_ptr<RequestBody> m_body;
    size_t m_bodyLeft = 0;  ///< bytes that have not come
    std::string m_output;
    size_t m_sent = 0;
    bool m_isClosing = false;
};

}  // namespace StoreServer
