#pragma once

#include <string>

/// The records of one program and user: "lumora-event-log/<program>.jsonl" in the user's state directory
/// ($XDG_STATE_HOME, otherwise ~/.local/state), a line for each, the newest last. Only the owner may read it.
/// A file that is full, at 1 MiB, becomes "<program>.jsonl.1", older ones ".2" and ".3", and the oldest goes.
/// Several processes may append at once.
///
/// A file "lumora-event-log/off" in the user's configuration directory ($XDG_CONFIG_HOME, otherwise
/// ~/.config) turns all that off, at once. Only append touches the disk.
class EventFile {
public:
    /// An empty name disables the log.
    explicit EventFile(const std::string& program = {});

    /// `line` includes its line end. A line that cannot be written completely is not written.
    void append(const std::string& line) const;

private:
    bool roll() const;
    std::string m_directory;  ///< empty: records are dropped
    std::string m_path;
    std::string m_offSwitch;
};
