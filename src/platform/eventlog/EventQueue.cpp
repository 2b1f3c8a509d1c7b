#include "eventlog/EventQueue.h"

#include <chrono>
#include <condition_variable>
#include <csignal>
#include <deque>
#include <mutex>
#include <thread>

#include "eventlog/EventFile.h"

namespace {

constexpr std::size_t MaximumWaitingBytes = 4 << 20;
constexpr std::chrono::seconds ExitLimit(1);

/// Blocks all signals, so that the new thread handles none.
class SignalsBlocked {
public:
    SignalsBlocked() {
        sigset_t all;
        sigfillset(&all);
        pthread_sigmask(SIG_SETMASK, &all, &m_before);
    }
    ~SignalsBlocked() { pthread_sigmask(SIG_SETMASK, &m_before, nullptr); }

private:
    sigset_t m_before;
};

}  // namespace

struct EventQueue::State {
    std::mutex mutex;
    std::condition_variable changed;
    EventFile file;
    bool isOn = false;
    std::deque<std::string> lines;  ///< the first one may be being written
    std::size_t bytes = 0;
    bool isWorking = false;
    bool isEnding = false;
};

EventQueue::EventQueue() : m_state(std::make_shared<State>()) {}

EventQueue::~EventQueue() {
    std::unique_lock<std::mutex> lock(m_state->mutex);
    m_state->changed.wait_for(lock, ExitLimit, [this] { return m_state->lines.empty(); });
    m_state->isEnding = true;
    m_state->changed.notify_all();
    m_state->changed.wait_for(lock, ExitLimit, [this] { return !m_state->isWorking; });
}

void EventQueue::setProgram(const std::string& name) {
    const std::lock_guard<std::mutex> lock(m_state->mutex);
    m_state->file = EventFile(name);
    m_state->isOn = !name.empty();
}

void EventQueue::add(const std::string& line) {
    const std::lock_guard<std::mutex> lock(m_state->mutex);
    if (!m_state->isOn || m_state->isEnding || m_state->bytes + line.size() > MaximumWaitingBytes)
        return;
    if (!m_state->isWorking) {
        const SignalsBlocked blocked;
        std::thread(work, m_state).detach();
        m_state->isWorking = true;
    }
    m_state->lines.push_back(line);
    m_state->bytes += line.size();
    m_state->changed.notify_all();
}

void EventQueue::work(const std::shared_ptr<State>& state) {
    std::unique_lock<std::mutex> lock(state->mutex);
    while (!state->isEnding) {
        if (state->lines.empty()) {
            state->changed.wait(lock);
            continue;
        }
        const std::string line = state->lines.front();
        const EventFile file = state->file;
        lock.unlock();
        file.append(line);
        lock.lock();
        state->bytes -= line.size();
        state->lines.pop_front();
        state->changed.notify_all();
    }
    state->isWorking = false;
    state->changed.notify_all();
}
