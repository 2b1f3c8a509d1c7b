#include "storeserver/server/Conversation.h"

#include "storeserver/request/RequestHead.h"

namespace StoreServer {

namespace {

constexpr size_t KeptCapacity = 64 * 1024;

int statusOf(RequestHead::State state) {
    switch (state) {
        case RequestHead::State::TooLong:
            return 431;
        case RequestHead::State::LineTooLong:
            return 414;
        case RequestHead::State::HasBody:
            return 413;
        default:
            return 400;
    }
}

}  // namespace

Conversation::Phase Conversation::phase() const {
    if (m_sent < m_output.size())
        return Phase::Writing;
    if (m_isClosing)
        return Phase::Over;
    return m_input.empty() ? Phase::Idle : Phase::Reading;
}

void Conversation::receive(std::string_view bytes) {
    m_input.append(bytes);
    answerNext();
}

void Conversation::refuse(int status) {
    m_input.clear();
    m_output += HttpExchange::refusal(status);
    m_isClosing = true;
}

void Conversation::sent(size_t count) {
    m_sent += count;
    if (m_sent < m_output.size())
        return;
    m_sent = 0;
    m_output.clear();
    if (m_output.capacity() > KeptCapacity)
        m_output.shrink_to_fit();
    answerNext();
}

void Conversation::answerNext() {
    if (m_isClosing || m_input.empty())
        return;
    const RequestHead::Scan scan = RequestHead::scan(m_input);
    if (scan.state == RequestHead::State::Complete) {
        m_isClosing = !m_exchange.answer(std::string_view(m_input).substr(0, scan.length), m_output);
        m_input.erase(0, scan.length);
    } else if (scan.state != RequestHead::State::Incomplete) {
        refuse(statusOf(scan.state));
    }
}

}  // namespace StoreServer
