"""Limits the disk space of a log as long as any process writes to it.

The keeper is a separate process, since programs can outlive the launcher: an installer starts the installed program
and exits, and the launcher may be killed while its program runs. For the same reason it monitors the wineserver.
"""

import errno
import fcntl
import os
import select
import signal
import time

from cellarix_launcher.logfile import KEEP, punch

STEP = 1 << 20           # growth of the log between two holes
BLOCK = 1 << 16
QUICK, CALM = 0.003, 0.02  # seconds between checks of a log that is being written
SILENCE = 30             # seconds without a write before the keeper checks for writers
SHORTEN_AFTER = 60       # seconds for readers of the complete log
COLLAPSE_RANGE = 8
IN_MODIFY, IN_CLOSE_WRITE = 2, 8


def detach(function, *keep_fds):
    """Runs `function` in a new process in a session of its own, with only `keep_fds` open. Returns its id, -1 on
    failure."""
    pid = _try_fork()
    if pid:
        return pid
    code = 1
    try:
        os.setsid()
        for number in (signal.SIGINT, signal.SIGHUP, signal.SIGQUIT, signal.SIGIO, signal.SIGPIPE):
            signal.signal(number, signal.SIG_IGN)
        signal.pthread_sigmask(signal.SIG_SETMASK, ())
        null = os.open(os.devnull, os.O_RDWR)
        for fd in (0, 1, 2):
            os.dup2(null, fd)
        low = 3
        for fd in sorted(keep_fds):
            os.closerange(low, fd)
            low = fd + 1
        os.closerange(low, 1024)
        os.chdir("/")
        function()
        code = 0
    finally:
        os._exit(code)


def _try_fork():
    try:
        return os.fork()
    except OSError:
        return -1


def leave_if_unused(fd):
    """Exits this process if no process has its log or pipe open for writing. The kernel may keep a descriptor of a
    killed process that was being passed to a dead wineserver; neither an end of file nor a close is reported then."""
    path = os.readlink(f"/proc/self/fd/{fd}")
    for entry in os.listdir("/proc"):
        try:
            fds = os.listdir(f"/proc/{entry}/fd") if entry.isdigit() else ()
        except OSError:
            continue
        if any(_writes(entry, other, path) for other in fds):
            return
    os._exit(0)


def _writes(pid, fd, path):
    try:
        if os.readlink(f"/proc/{pid}/fd/{fd}") != path:
            return False
        with open(f"/proc/{pid}/fdinfo/{fd}", encoding="ascii") as file:
            flags = next(line for line in file if line.startswith("flags:"))
        return int(flags.split()[1], 8) & os.O_ACCMODE != os.O_RDONLY
    except OSError:
        return False


class Keeper:
    """Punches holes into the log behind read_fd. wine_pid is used on file systems without leases."""

    def __init__(self, read_fd, wine_pid):
        self.fd = read_fd
        self.wine = f"/proc/{wine_pid}"
        self.punched = 0

    def run(self, at_end):
        """Runs until the last writer has closed the log. Then calls at_end, and later removes the hole from the file.
        """
        events = self._watch()
        size = 0
        while self.has_writers():
            ready = select.select([events], [], [], SILENCE)[0] if events >= 0 else [time.sleep(CALM)]
            if ready and events >= 0:
                os.read(events, 1 << 14)
            before, size = size, os.fstat(self.fd).st_size
            self.thin(size)
            time.sleep(QUICK if size - before > STEP else CALM)
        self.thin(os.fstat(self.fd).st_size)
        at_end()
        if self.punched:
            for _ in range(SHORTEN_AFTER):
                time.sleep(1)
                if os.fstat(self.fd).st_nlink == 0:
                    return
            if not self.has_writers():
                self.shorten()

    def thin(self, size):
        if size < self.punched:  # truncated by a new launch
            self.punched = 0
        end = (size - KEEP) // BLOCK * BLOCK
        if end - self.punched < STEP:
            return
        with _writable(self.fd) as fd:
            punch(fd, self.punched, end - self.punched)
        self.punched = end

    def has_writers(self):
        """A read lease is granted only if no process has the file open for writing."""
        try:
            fcntl.fcntl(self.fd, fcntl.F_SETLEASE, fcntl.F_RDLCK)
            fcntl.fcntl(self.fd, fcntl.F_SETLEASE, fcntl.F_UNLCK)
            return False
        except OSError as error:
            if error.errno == errno.EAGAIN:
                return True
            return os.path.exists(self.wine)

    def shorten(self):
        """Removes the hole from the file if the file system can, so that copies are small too."""
        end = (os.fstat(self.fd).st_size - KEEP) // BLOCK * BLOCK
        if end > 0:
            import ctypes
            libc = ctypes.CDLL(None, use_errno=True)
            libc.fallocate.argtypes = (ctypes.c_int, ctypes.c_int, ctypes.c_int64, ctypes.c_int64)
            with _writable(self.fd) as fd:
                libc.fallocate(fd, COLLAPSE_RANGE, 0, end)

    def _watch(self):
        """An inotify descriptor for the file, so that a silent program costs nothing; -1 on failure."""
        import ctypes
        libc = ctypes.CDLL(None, use_errno=True)
        fd = libc.inotify_init1(os.O_CLOEXEC)
        path = f"/proc/self/fd/{self.fd}".encode()
        if fd >= 0 and libc.inotify_add_watch(fd, path, IN_MODIFY | IN_CLOSE_WRITE) < 0:
            os.close(fd)
            fd = -1
        return fd


class _writable:
    """Reopens the file of a descriptor for writing, briefly, since has_writers() would count this process too."""

    def __init__(self, fd):
        self.path = f"/proc/self/fd/{fd}"

    def __enter__(self):
        self.fd = os.open(self.path, os.O_WRONLY | os.O_CLOEXEC)
        return self.fd

    def __exit__(self, *_):
        os.close(self.fd)
