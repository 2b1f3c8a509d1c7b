"""The log of a launch: opened here, written by Wine itself, limited in size by logkeeper.

Wine writes directly to the file, which is opened for appending. Everything more than 10 MiB before the end is freed by
punching holes; on a file system without holes, Wine writes to a pipe instead (boundedlog). The lines are unchanged
output of the programs; a hole reads as zero bytes.
"""

import errno
import fcntl
import os
import stat
import struct

KEEP = 10 << 20
PUNCH_IOCTL = 0x4030582B  # frees a range of a regular file and keeps its size; struct space_resv below


class Log:
    """`fd` is open for writing, or -1 to discard the output; `holes`: the file supports holes."""

    def __init__(self, path, fd=-1, regular=False, holes=False):
        self.path = path
        self.fd = fd
        self.regular = regular
        self.holes = holes


def empty(path):
    """Truncates or creates the file. False if that fails, or for anything but a regular file."""
    fd = -1
    try:
        fd = _open(os.path.abspath(path))
        if not stat.S_ISREG(os.fstat(fd).st_mode):
            return False
        os.ftruncate(fd, 0)
        return True
    except (OSError, ValueError):
        return False
    finally:
        if fd >= 0:
            os.close(fd)


def _open(path):
    os.makedirs(os.path.dirname(path), exist_ok=True)
    return os.open(path, os.O_WRONLY | os.O_CREAT | os.O_APPEND | os.O_CLOEXEC | os.O_NOFOLLOW | os.O_NONBLOCK, 0o644)


def open_log(path, first_line, say):
    """Truncates or creates the file and its directory. Never fails: reports once if there can be no log."""
    path = os.path.abspath(path)
    fd = -1
    try:
        fd = _open(path)
        regular = stat.S_ISREG(os.fstat(fd).st_mode)
        os.set_blocking(fd, True)
        if regular:
            os.ftruncate(fd, 0)
        _write_all(fd, f"launcher: {first_line}\n".encode("utf-8", "surrogateescape"))
        return Log(path, fd, regular, regular and can_punch(fd))
    except (OSError, ValueError) as error:
        if fd >= 0:
            os.close(fd)
        reason = os.strerror(error.errno) if isinstance(error, OSError) and error.errno else str(error)
        say(f"the log {path} cannot be written ({reason}); the program runs without it")
        return Log(path)


def _write_all(fd, data):
    while data:
        written = os.write(fd, data)
        if written == 0:
            raise OSError(errno.ENOSPC, os.strerror(errno.ENOSPC))
        data = data[written:]


def punch(fd, start, length):
    """Frees a range on disk; OSError if the file system has no holes."""
    fcntl.ioctl(fd, PUNCH_IOCTL, struct.pack("@hhqqiI16x", 0, os.SEEK_SET, start, length, 0, 0))


def can_punch(fd):
    """Whether logkeeper can work on this file; it reopens the file through /proc."""
    try:
        punch(fd, 1 << 30, 4096)
        return os.path.exists(f"/proc/self/fd/{fd}")
    except OSError:
        return False
