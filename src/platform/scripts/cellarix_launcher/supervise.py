"""Runs Wine as a child process in a session of its own, passes signals on to its group, and waits for it."""

import errno
import os
import signal

from cellarix_launcher import orphans

# A signal that the caller ignores (as nohup does) stays ignored, also in Wine.
PASSED_ON = tuple(number for number in (signal.SIGTERM, signal.SIGINT, signal.SIGHUP, signal.SIGQUIT)
                  if signal.getsignal(number) != signal.SIG_IGN)
TAIL_INTERVAL = 0.05
LONGEST_LINE = 1 << 16  # bytes that are searched for the end of a cut line


class Start:
    """A command, its environment and its working directory ("" for the current one)."""

    def __init__(self, argv, env, folder):
        self.argv = argv
        self.env = env
        self.folder = folder


class Child:
    """A process that leads its own session and group. `code` is its exit code, None while it runs."""

    def __init__(self, pid):
        self.pid = pid
        self.code = None

    def poll(self):
        if self.code is None:
            pid, status = os.waitpid(self.pid, os.WNOHANG)
            if pid:
                self.code = os.waitstatus_to_exitcode(status)
                if self.code < 0:
                    self.code = 128 - self.code
        return self.code

    def send(self, number):
        try:
            os.killpg(self.pid, number)
        except OSError:
            pass


def hold_signals():
    """Blocks the signals, for fetch_signal(). Returns the previous mask, which a child must restore."""
    signal.signal(signal.SIGCHLD, signal.SIG_DFL)  # if ignored, the exit code would be lost
    return signal.pthread_sigmask(signal.SIG_BLOCK, PASSED_ON + (signal.SIGCHLD,))


def fetch_signal(timeout):
    """The next signal to pass on; None after the time-out or if a child has changed its state."""
    if timeout is None:
        info = signal.sigwaitinfo(PASSED_ON + (signal.SIGCHLD,))
    else:
        info = signal.sigtimedwait(PASSED_ON + (signal.SIGCHLD,), timeout)
    return info.si_signo if info and info.si_signo in PASSED_ON else None


def spawn(start, output_fd, mask, prepare=os.setsid):
    """Starts the command; OSError if that fails. output_fd becomes stdout and stderr unless it is -1."""
    error_in, error_out = os.pipe2(os.O_CLOEXEC)
    pid = os.fork()
    if pid == 0:
        try:
            prepare()
            if output_fd >= 0:
                os.dup2(output_fd, 1)
                os.dup2(output_fd, 2)
            if start.folder:
                try:
                    os.chdir(start.folder)
                except OSError:
                    pass
            for number in (signal.SIGPIPE, signal.SIGXFSZ):  # ignored by the interpreter
                signal.signal(number, signal.SIG_DFL)
            signal.pthread_sigmask(signal.SIG_SETMASK, mask)
            os.execve(start.argv[0], start.argv, start.env)
        except (OSError, ValueError) as error:
            os.write(error_out, str(getattr(error, "errno", None) or errno.EINVAL).encode())
        finally:
            os._exit(127)
    os.close(error_out)
    with open(error_in, "rb") as pipe:
        error_number = pipe.read()
    if error_number:
        os.waitpid(pid, 0)
        raise OSError(int(error_number), os.strerror(int(error_number)))
    return Child(pid)


def start_wine(start, output_fd, mask, prepare=os.setsid):
    from cellarix_launcher import errors
    try:
        return spawn(start, output_fd, mask, prepare)
    except (OSError, ValueError) as error:
        subject = f"{start.argv[0]} ({error.strerror})" if isinstance(error, OSError) else start.argv[0]
        raise errors.LaunchError(
            errors.NO_WINE, f"{start.argv[0]} cannot be started: {error}", "not-startable", subject) from error


def run(start, log, request, say):
    """Runs the command to its end. Returns the exit code for the caller."""
    mask = hold_signals()
    tail = None
    if log is None or log.fd < 0 or not log.regular:
        child = start_wine(start, -1 if log is None else 2 if request.show_logs else _sink(log), mask)
        orphans.watch(start.env["WINEPREFIX"])
    elif log.holes:
        read_fd = os.open(f"/proc/self/fd/{log.fd}", os.O_RDONLY | os.O_CLOEXEC)
        child = start_wine(start, log.fd, mask)
        _keep(log, read_fd, child, start, request)
        tail = Tail(read_fd) if request.show_logs else None
    else:
        child = _start_with_pump(start, log, request, mask)
    return _wait(child, tail, start, request, say)


def _sink(log):
    return log.fd if log.fd >= 0 else os.open(os.devnull, os.O_WRONLY | os.O_CLOEXEC)


def _keep(log, read_fd, child, start, request):
    from cellarix_launcher import logkeeper
    os.close(log.fd)
    keeper = logkeeper.Keeper(read_fd, child.pid)

    def keep():
        orphans.watch(start.env["WINEPREFIX"], lambda: logkeeper.leave_if_unused(read_fd))
        keeper.run(lambda: orphans.end(start.env["WINEPREFIX"]))

    logkeeper.detach(keep, read_fd)
    if not request.show_logs:
        os.close(read_fd)


def _start_with_pump(start, log, request, mask):
    from cellarix_launcher import boundedlog, logkeeper
    read_fd, write_fd = os.pipe2(os.O_CLOEXEC)
    child = start_wine(start, write_fd, mask)
    os.close(write_fd)
    echo = os.dup(2) if request.show_logs else -1
    fds = [fd for fd in (read_fd, log.fd, echo) if fd >= 0]

    def carry():
        orphans.watch(start.env["WINEPREFIX"], lambda: logkeeper.leave_if_unused(read_fd))
        boundedlog.pump(read_fd, boundedlog.BoundedLog(log.path, log.fd), echo)
        orphans.end(start.env["WINEPREFIX"])

    logkeeper.detach(carry, *fds)
    for fd in fds:
        os.close(fd)
    return child


class Tail:
    """Copies new content of the log to stderr, as long as stderr is open."""

    def __init__(self, fd):
        self.fd = fd
        self.at = 0
        self.is_within_line = False

    def show(self, patience=100):
        """Copies up to the current end; `patience` is the time in ms that the reader may stall."""
        import select
        if self.fd < 0:
            return
        pipe = select.poll()
        pipe.register(2, select.POLLOUT)
        end = os.fstat(self.fd).st_size
        self.at = min(self.at, end)
        while self.fd >= 0 and self.at < end and pipe.poll(patience):
            try:
                self._skip_freed()
                data = os.pread(self.fd, 4096, self.at)
            except OSError:
                return
            if not data:
                return
            try:
                written = os.write(2, data)
                self.at += written
                self.is_within_line = not data[:written].endswith(b"\n")
            except OSError:
                self.fd = -1

    def _skip_freed(self):
        """Skips the part that has been freed meanwhile and the rest of the line that was cut there."""
        data_at = os.lseek(self.fd, self.at, os.SEEK_DATA)
        if data_at > self.at:
            line_end = max(os.pread(self.fd, LONGEST_LINE, data_at).find(b"\n"), 0)
            # The line feed itself ends the line before the gap.
            self.at = data_at + line_end + (not self.is_within_line)


def _wait(child, tail, start, request, say):
    while child.poll() is None:
        number = fetch_signal(TAIL_INTERVAL if tail else None)
        if number:
            child.send(number)
        if tail:
            tail.show()
    if request.wait:
        from cellarix_launcher import family
        family.wait_for_rest(child, start, request.uuid, tail, say)
    if tail:
        tail.show(3000)
    return child.code
