#pragma once

#include <memory>
#include <string>

/// A queue of lines for the file. A thread writes them, so callers never wait; lines are dropped if the disk
/// is too slow. At the end of the process the thread has 1 s for the remaining lines.
class EventQueue {
public:
    EventQueue();
    ~EventQueue();
    EventQueue(const EventQueue&) = delete;
    EventQueue& operator=(const EventQueue&) = delete;

    /// Sets the program whose file is written; with an empty name, later lines are dropped.
    void setProgram(const std::string& name);
    void add(const std::string& line);

private:
    struct State;
    static void work(const std::shared_ptr<State>& state);

    std::shared_ptr<State>
        m_state;  ///< shared with the thread, which may outlive this object if the disk is too slow
};
