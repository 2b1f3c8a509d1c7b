"""The lock of a bottle: shared by all launches, exclusive for whoever packs or upgrades the bottle. It is on the
directory of drive C, so that it leaves no file behind, and ends with the process that has it. The bottle's own directory
is locked while its server starts."""

import fcntl
import os

SHARED, EXCLUSIVE = fcntl.LOCK_SH, fcntl.LOCK_EX


class BottleLock:
    def __init__(self):
        self.fd = -1

    def acquire(self, directory, kind):
        """Does not wait. Returns False if another process has the lock in a way that excludes this one. Where the file
        system cannot lock a directory, it counts as acquired."""
        self.release()
        try:
            self.fd = os.open(os.path.join(directory, "drive_c"), os.O_RDONLY | os.O_DIRECTORY | os.O_CLOEXEC)
            fcntl.flock(self.fd, kind | fcntl.LOCK_NB)
        except BlockingIOError:
            self.release()
            return False
        except OSError:
            self.release()
        return True

    def release(self):
        if self.fd >= 0:
            os.close(self.fd)
        self.fd = -1
