#include "eventlog/EventFile.h"

#include <fcntl.h>
#include <pwd.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <vector>

namespace {

constexpr off_t MaximumFileBytes = 1 << 20;
constexpr int OldFiles = 3;
constexpr int MaximumAttempts = 5;  // in case other processes roll the file at the same time
const char Name[] = "/lumora-event-log";

std::string home() {
    const char* value = std::getenv("HOME");
    if (value && *value == '/')
        return value;
    std::vector<char> buffer(16384);
    passwd entry;
    passwd* found = nullptr;
    getpwuid_r(getuid(), &entry, buffer.data(), buffer.size(), &found);
    return found ? found->pw_dir : "";
}

/// The directory in the variable, if absolute, else the default below the home directory.
std::string userDirectory(const char* variable, const char* belowHome) {
    const char* value = std::getenv(variable);
    if (value && *value == '/')
        return value;
    const std::string base = home();
    return base.empty() ? base : base + belowHome;
}

bool makeDirectories(const std::string& path) {
    for (std::size_t end = path.find('/', 1); end != std::string::npos; end = path.find('/', end + 1))
        mkdir(path.substr(0, end).c_str(), 0700);
    return mkdir(path.c_str(), 0700) == 0 || errno == EEXIST;
}

bool isFile(int file, const std::string& path) {
    struct stat open, named;
    return fstat(file, &open) == 0 && lstat(path.c_str(), &named) == 0 && open.st_dev == named.st_dev &&
           open.st_ino == named.st_ino;
}

class File {
public:
    explicit File(const std::string& path)
        : m_fd(open(path.c_str(), O_RDWR | O_APPEND | O_CREAT | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC, 0600)) {}
    ~File() {
        if (m_fd >= 0)
            close(m_fd);
    }
    File(const File&) = delete;
    File& operator=(const File&) = delete;

    /// Locks the file; waits for other writers. Returns false for anything but a regular file of this user.
    bool lock() {
        struct stat facts;
        return m_fd >= 0 && fstat(m_fd, &facts) == 0 && S_ISREG(facts.st_mode) &&
               fchmod(m_fd, S_IRUSR | S_IWUSR) == 0 && flock(m_fd, LOCK_EX) == 0;
    }
    bool isCurrentFile(const std::string& path) const { return isFile(m_fd, path); }
    off_t size() const { return lseek(m_fd, 0, SEEK_END); }

    void append(const std::string& line) const {
        const off_t before = size();
        char last = '\n';
        if (before > 0 && pread(m_fd, &last, 1, before - 1) != 1)
            return;
        // A killed process may have left an incomplete line.
        const std::string text = last == '\n' ? line : '\n' + line;
        if (write(m_fd, text.data(), text.size()) != ssize_t(text.size()) && ftruncate(m_fd, before) != 0)
            return;
    }

private:
    int m_fd;
};

}  // namespace

EventFile::EventFile(const std::string& program) {
    const std::string state = userDirectory("XDG_STATE_HOME", "/.local/state");
    const std::string config = userDirectory("XDG_CONFIG_HOME", "/.config");
    if (program.empty() || state.empty())
        return;
    m_directory = state + Name;
    m_path = m_directory + "/" + program + ".jsonl";
    m_offSwitch = config + Name + "/off";
}

void EventFile::append(const std::string& line) const {
    if (m_directory.empty() || access(m_offSwitch.c_str(), F_OK) == 0 || !makeDirectories(m_directory))
        return;
    for (int attempt = 0; attempt < MaximumAttempts; ++attempt) {
        File file(m_path);
        if (!file.lock())
            return;
        if (!file.isCurrentFile(m_path))
            continue;
        const off_t size = file.size();
        if (size == 0 || size + off_t(line.size()) <= MaximumFileBytes) {
            file.append(line);
            return;
        }
        if (!roll())
            return;
    }
}

/// Called with the current file locked. Returns false if it can't be renamed.
bool EventFile::roll() const {
    const auto old = [this](int number) { return m_path + "." + std::to_string(number); };
    for (int number = OldFiles; number > 1; --number)
        std::rename(old(number - 1).c_str(), old(number).c_str());
    return std::rename(m_path.c_str(), old(1).c_str()) == 0;
}
