#pragma once

#include <memory>
#include <string>

/// Lines on their way to the file. A thread of its own writes them, so that whoever adds one never waits;
/// when the disk can't keep up, lines are dropped. At the end of the process it gets a second for the rest.
class EventQueue {
public:
    EventQueue();
    ~EventQueue();
    EventQueue(const EventQueue&) = delete;
    EventQueue& operator=(const EventQueue&) = delete;

    /// Whose file it is; an empty name drops what is added from then on.
    void setProgram(const std::string& name);
    void add(const std::string& line);

private:
    struct State;
    static void work(const std::shared_ptr<State>& state);

    std::shared_ptr<State> m_state;  ///< the thread keeps it when the disk outlasts the process's patience
};
