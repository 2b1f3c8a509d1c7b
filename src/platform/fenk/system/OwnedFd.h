#pragma once

#include <unistd.h>

namespace Fenk {

/// A file descriptor with one owner.
class OwnedFd {
public:
    explicit OwnedFd(int fd = -1) : m_fd(fd) {}
    OwnedFd(OwnedFd&& other) noexcept : m_fd(other.release()) {}
    OwnedFd& operator=(OwnedFd&& other) noexcept {
        reset(other.release());
        return *this;
    }
    ~OwnedFd() { reset(); }

    int get() const { return m_fd; }
    bool isValid() const { return m_fd >= 0; }
    int release() {
        const int fd = m_fd;
        m_fd = -1;
        return fd;
    }
    void reset(int fd = -1) {
        if (m_fd >= 0 && m_fd != fd)
            ::close(m_fd);
        m_fd = fd;
    }

private:
    int m_fd;
};

}  // namespace Fenk
