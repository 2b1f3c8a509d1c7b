#include "storeserver/server/Conversation.h"

#include <algorithm>

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
        case RequestHead::State::BadBody:
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
    if (m_body)
        return Phase::Receiving;
    return m_input.empty() ? Phase::Idle : Phase::Reading;
}

void Conversation::receive(std::string_view bytes) {
    m_input.append(bytes);
    answerNext();
}

void Conversation::refuse(int status) {
    m_input.clear();
    m_body.reset();
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
    if (m_body) {
        receiveBody();
        return;
    }
    const RequestHead::Scan scan = RequestHead::scan(m_input);
    if (scan.state == RequestHead::State::Incomplete)
        return;
    if (scan.state != RequestHead::State::Complete) {
        refuse(statusOf(scan.state));
        return;
    }
    m_head = m_input.substr(0, scan.length);
    m_input.erase(0, scan.length);
    if (scan.bodyLength == 0) {
        answer();
        return;
    }
    m_bodyLeft = scan.bodyLength;
    m_body = m_exchange.bodyOf(m_head, scan.bodyLength, m_peer);
    if (m_body)
        receiveBody();
    else
        refuse(statusOf(RequestHead::State::BadBody));
}

void Conversation::receiveBody() {
    const size_t count = std::min(m_bodyLeft, m_input.size());
    m_body->write(std::string_view(m_input).substr(0, count));
    m_input.erase(0, count);
    m_bodyLeft -= count;
    if (m_bodyLeft == 0)
        answer();
}

void Conversation::answer() {
    m_isClosing = !m_exchange.answer(m_head, m_body.get(), m_peer, m_output);
    m_body.reset();
    m_head.clear();
}

}  // namespace StoreServer
