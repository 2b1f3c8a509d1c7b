"""Wine as a child: started in a session of its own, signalled through its group, waited for."""

import errno
import os
import signal

from cellarix_launcher import orphans

# What the caller has set to be ignored (nohup does) stays ignored, by Wine as well.
PASSED_ON = tuple(number for number in (signal.SIGTERM, signal.SIGINT, signal.SIGHUP, signal.SIGQUIT)
                  if signal.getsignal(number) != signal.SIG_IGN)
TAIL_INTERVAL = 0.05


class Start:
    """A command with its environment and the directory it starts in ("" for the present one)."""

    def __init__(self, argv, env, folder):
        self.argv = argv
        self.env = env
        self.folder = folder


class Child:
    """The running process, leader of its own session and group. `code` is the exit code once it has ended."""

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
    """From here on signals are fetched, never delivered. Returns the mask that a child needs again."""
    signal.signal(signal.SIGCHLD, signal.SIG_DFL)  # an ignored one would lose the exit code
    return signal.pthread_sigmask(signal.SIG_BLOCK, PASSED_ON + (signal.SIGCHLD,))


def fetch_signal(timeout):
    """The next signal to be passed on, or None after the time or when a child has changed."""
    if timeout is None:
        info = signal.sigwaitinfo(PASSED_ON + (signal.SIGCHLD,))
    else:
        info = signal.sigtimedwait(PASSED_ON + (signal.SIGCHLD,), timeout)
    return info.si_signo if info and info.si_signo in PASSED_ON else None


def spawn(start, output_fd, mask, prepare=os.setsid):
    """Starts the command; OSError if it cannot be started. output_fd takes stdout and stderr, -1 leaves them."""
    told, tell = os.pipe2(os.O_CLOEXEC)
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
            for number in (signal.SIGPIPE, signal.SIGXFSZ):  # which the interpreter ignores
                signal.signal(number, signal.SIG_DFL)
            signal.pthread_sigmask(signal.SIG_SETMASK, mask)
            os.execve(start.argv[0], start.argv, start.env)
        except (OSError, ValueError) as error:
            os.write(tell, str(getattr(error, "errno", None) or errno.EINVAL).encode())
        finally:
            os._exit(127)
    os.close(tell)
    with open(told, "rb") as pipe:
        problem = pipe.read()
    if problem:
        os.waitpid(pid, 0)
        raise OSError(int(problem), os.strerror(int(problem)))
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
    """One launch to its end. Returns the exit code for the caller."""
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
    keeper = logkeeper.Keeper(read_fd, child.pid, not request.show_logs)

    def keep():
        orphans.watch(start.env["WINEPREFIX"], lambda: logkeeper.leave_if_unused(read_fd))
        keeper.run(lambda: orphans.end(start.env["WINEPREFIX"]))

    logkeeper.detach(keep, read_fd)
    if not request.show_logs:
        os.close(read_fd)


def _start_with_pump(start, log, request, mask):
    from cellarix_launcher import logkeeper
    read_fd, write_fd = os.pipe2(os.O_CLOEXEC)
    child = start_wine(start, write_fd, mask)
    os.close(write_fd)
    echo = os.dup(2) if request.show_logs else -1
    fds = [fd for fd in (read_fd, log.fd, echo) if fd >= 0]

    def carry():
        orphans.watch(start.env["WINEPREFIX"], lambda: logkeeper.leave_if_unused(read_fd))
        logkeeper.pump(read_fd, logkeeper.BoundedLog(log.path, log.fd), echo)
        orphans.end(start.env["WINEPREFIX"])

    logkeeper.detach(carry, *fds)
    for fd in fds:
        os.close(fd)
    return child


class Tail:
    """Shows on stderr what has come to the log, as long as somebody takes it."""

    def __init__(self, fd):
        self.fd = fd
        self.at = 0

    def show(self, patience=100):
        """Up to what the log holds now; patience is how many milliseconds a reader may stall."""
        import select
        if self.fd < 0:
            return
        pipe = select.poll()
        pipe.register(2, select.POLLOUT)
        end = os.fstat(self.fd).st_size
        self.at = min(self.at, end)
        while self.fd >= 0 and self.at < end and pipe.poll(patience):
            try:
                # A hole in front is what was given back to the disk meanwhile.
                self.at = os.lseek(self.fd, self.at, os.SEEK_DATA)
                data = os.pread(self.fd, 4096, self.at)
            except OSError:
                return
            if not data:
                return
            try:
                self.at += os.write(2, data)
            except OSError:
                self.fd = -1


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
