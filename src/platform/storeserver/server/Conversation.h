#pragma once

#include <string>
#include <string_view>

#include "storeserver/request/HttpExchange.h"

namespace StoreServer {

/// The requests and answers of one connection, apart from its socket. Memory is bounded: bytes are wanted
/// only while there is no answer to send, so that at most one head and one answer are held.
class Conversation {
public:
    /// What the connection waits for, which decides how long it may.
    enum class Phase {
        Idle,     ///< the next request
        Reading,  ///< the rest of a request
        Writing,  ///< the client, to take the answer
        Over,     ///< nothing
    };

    /// The exchange must outlive the conversation.
    explicit Conversation(HttpExchange& exchange) : m_exchange(exchange) {}

    Phase phase() const;
    /// Takes bytes from the client; only in the phases Idle and Reading. Any number of them may have come.
    void receive(std::string_view bytes);
    /// The client sends no more: what it has asked is still answered.
    void finish() { m_isClosing = true; }
    /// Makes the rest of this conversation a refusal.
    void refuse(int status);

    std::string_view output() const { return std::string_view(m_output).substr(m_sent); }
    /// The bytes in memory until the client has taken the whole output.
    size_t held() const { return m_output.size(); }
    /// So many bytes of the output have been sent.
    void sent(size_t count);

private:
    void answerNext();

    HttpExchange& m_exchange;
    std::string m_input;
    std::string m_output;
    size_t m_sent = 0;
    bool m_isClosing = false;
};

}  // namespace StoreServer
