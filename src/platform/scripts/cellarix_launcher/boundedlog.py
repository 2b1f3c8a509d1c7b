"""A log that is written by this process: for file systems without holes, and for terminals."""

import os

from cellarix_launcher.logfile import KEEP


class BoundedLog:
    """Writes a log of at most twice KEEP bytes; then atomically replaces it by its last KEEP bytes."""

    def __init__(self, path, fd):
        self.path = path
        self.fd = fd
        self.size = os.fstat(fd).st_size

    def write(self, data):
        """Writes the data; drops it if the disk is full."""
        try:
            while data:
                written = os.write(self.fd, data)
                self.size += written
                data = data[written:]
            if self.size >= 2 * KEEP:
                self._rotate()
        except OSError:
            pass

    def _rotate(self):
        fresh = f"{self.path}.{os.getpid()}.tmp"
        new = os.open(fresh, os.O_WRONLY | os.O_CREAT | os.O_TRUNC | os.O_APPEND | os.O_NOFOLLOW | os.O_CLOEXEC, 0o644)
        try:
            with open(self.path, "rb") as old:
                old.seek(self.size - KEEP)
                left = old.read(KEEP)
            with open(os.dup(new), "wb") as out:
                out.write(left)
            os.replace(fresh, self.path)
        except OSError:
            os.close(new)
            os.unlink(fresh)
            # No space for the copy either: truncate the log instead of growing.
            os.ftruncate(self.fd, 0)
            self.size = 0
            return
        os.close(self.fd)
        self.fd, self.size = new, len(left)


def pump(read_fd, log, echo_fd):
    """Copies a pipe into the log, and to echo_fd unless it is -1, until the last writer has closed the pipe."""
    while data := os.read(read_fd, 1 << 16):
        log.write(data)
        if echo_fd >= 0:
            try:
                os.write(echo_fd, data)
            except OSError:
                echo_fd = -1
