"""Opens a terminal window for a console program or for a shell in a bottle.

The outer launcher opens a terminal emulator that runs a second, inner launcher. That one reports its
process id and the end of the program through a FIFO, since terminal emulators pass on neither.
"""

import fcntl
import os
import select
import shutil
import signal
import sys
import tempfile
import termios
import time
import tty

from cellarix_launcher import bottle as bottles
from cellarix_launcher import environment, errors, logfile, orphans, supervise, words

EMULATORS = (
    ("x-terminal-emulator", ["-e"]),
    ("gnome-terminal", ["--wait", "--"]),
    ("konsole", ["-e"]),
    ("xfce4-terminal", ["-x"]),
    ("xterm", ["-e"]),
)
START_TIME = 15  # seconds for the first report of the inner launcher after the emulator has detached
# A terminal server starts its windows with its own environment, so these variables are passed as arguments.
INHERITED = ("WINE", "_CXB_", "GIO_LAUNCHED_", "ATTACH_", "XDG_", "LC_", "LANG", "HOME", "PATH", "DISPLAY",
             "XAUTHORITY", "WAYLAND_DISPLAY", "DBUS_SESSION_BUS_ADDRESS", "DXVK_", "VKD3D_", "MESA_", "__GL", "DRI_PRIME")
TEXTS = {
    "ended": ("The program has ended with exit code {}. Press any key to close this window.",
              "程序已结束（退出码 {}）。按任意键关闭此窗口。"),
}


def _text(key, *values):
    language = os.environ.get("LC_ALL") or os.environ.get("LC_MESSAGES") or os.environ.get("LANG") or ""
    return TEXTS[key][1 if language.startswith("zh") else 0].format(*values)


def find_emulator():
    for name, option in EMULATORS:
        path = shutil.which(name)
        if path:
            return [path] + option
    return None


def _command(emulator, env, argv):
    chosen = [f"{name}={value}" for name, value in sorted(env.items()) if name.startswith(INHERITED)]
    return emulator + ["/usr/bin/env"] + chosen + argv


def open_shell(name):
    """Opens a shell for the bottle: WINEPREFIX is set, and `wine` is the bottle's."""
    bottle = bottles.load_bottle(name, os.environ)
    wine = environment.find_wine(bottle, os.environ)
    env = environment.wine_environment(bottle, os.environ, "", None)
    env["PATH"] = os.path.dirname(wine) + ":" + env.get("PATH", "/usr/bin:/bin")
    emulator = find_emulator()
    if emulator is None:
        raise errors.LaunchError(errors.NO_PROGRAM, "no terminal emulator is installed; install xterm")
    shell = os.environ.get("SHELL", "")
    shell = shell if shell.startswith("/") and os.access(shell, os.X_OK) else "/bin/sh"
    drive = os.path.join(bottle.directory, "drive_c")
    folder = drive if os.path.isdir(drive) else bottle.directory
    argv = _command(emulator, env, ["/bin/sh", "-c", 'cd "$1" && exec "$2"', "sh", folder, shell])
    mask = supervise.hold_signals()
    child = supervise.start_wine(supervise.Start(argv, env, ""), -1, mask)
    while child.poll() is None:
        number = supervise.fetch_signal(None)
        if number:
            child.send(number)
    return child.code


def run_in_terminal(request, say):
    """Returns the program's exit code, or None if there is no terminal and the program must run without one."""
    emulator = find_emulator()
    if emulator is None:
        say("no terminal emulator is installed; the program runs without one")
        return None
    folder = tempfile.mkdtemp(prefix="cellarix-", dir=os.environ.get("XDG_RUNTIME_DIR") or None)
    try:
        fifo = os.path.join(folder, "end")
        os.mkfifo(fifo, 0o600)
        return _Outside(emulator, request, fifo, say).run()
    finally:
        shutil.rmtree(folder, ignore_errors=True)


def _inner_words(request, fifo):
    inner = [os.path.realpath(sys.argv[0]), request.bottle, "--in-terminal", fifo]
    if request.log_path:
        inner += ["--log-path", os.path.abspath(request.log_path)]
    inner += ["--wait"] if request.wait else []
    inner += ["--uuid", request.uuid] if request.uuid else []
    return inner + ["--"] + request.words


class _Outside:
    """Waits for the inner launcher, which runs until the user closes the window."""

    def __init__(self, emulator, request, fifo, say):
        self.argv = _command(emulator, os.environ, _inner_words(request, fifo))
        self.pipe = os.open(fifo, os.O_RDONLY | os.O_NONBLOCK | os.O_CLOEXEC)
        self.say = say
        self.report = b""
        self.closed = False

    def run(self):
        mask = supervise.hold_signals()
        window = supervise.start_wine(supervise.Start(self.argv, os.environ, ""), -1, mask)
        deadline = None
        while True:
            number = supervise.fetch_signal(0.05)
            if number:
                self._pass_on(number, window)
            self._read()
            fields = dict(line.split(b" ", 1) for line in self.report.split(b"\n")[:-1])
            if b"failed" in fields:
                code, text = fields[b"failed"].decode("utf-8", "surrogateescape").split(": ", 1)
                raise errors.LaunchError(int(code), text)
            if b"exit" in fields:
                return int(fields[b"exit"])
            if fields and self.closed:
                return 128 + signal.SIGHUP  # the window was closed, and the inner launcher exited
            if not fields and window.poll() is not None:
                deadline = deadline or time.monotonic() + (START_TIME if window.code == 0 else 0)
                if time.monotonic() >= deadline:
                    self.say("the terminal emulator could not be started; the program runs without one")
                    return None

    def _read(self):
        try:
            data = os.read(self.pipe, 4096)
        except BlockingIOError:
            return
        self.report += data
        self.closed = not data

    def _pass_on(self, number, window):
        self._read()
        lines = self.report.split(b"\n")
        if not lines[0].startswith(b"pid "):
            window.send(number)
            return
        try:
            os.kill(int(lines[0][4:]), number)
        except ProcessLookupError:
            pass


def run_inside(request, start, say):
    """Runs the program on a pseudo terminal, then waits for a key before the window closes."""
    report = os.open(request.report, os.O_WRONLY | os.O_CLOEXEC)
    os.write(report, f"pid {os.getpid()}\n".encode())
    code = _Screen(request, start, say).run()
    os.write(report, f"exit {code}\n".encode())
    os.close(report)
    _wait_for_key("\r\n" + _text("ended", code) + "\r\n")
    return code


def report_failure(fifo, text):
    """Reports to the outer launcher that the program was not started."""
    try:
        report = os.open(fifo, os.O_WRONLY | os.O_CLOEXEC | os.O_NONBLOCK)
        os.write(report, f"failed {text}\n".encode("utf-8", "surrogateescape"))
        os.close(report)
    except OSError:
        pass


def _wait_for_key(text):
    """Ignores keys typed before; returns at once if the window is closed."""
    try:
        before = termios.tcgetattr(0)
        tty.setcbreak(0)
        termios.tcflush(0, termios.TCIFLUSH)
    except termios.error:
        return
    try:
        os.write(1, text.encode())
        while not select.select([0], [], [], 0.2)[0]:
            if supervise.fetch_signal(0):
                return
        os.read(0, 1)
    except OSError:
        pass
    finally:
        _restore(before)


class _Screen:
    """A pseudo terminal between the window and the program; the output is also written to the log."""

    def __init__(self, request, start, say):
        self.request = request
        self.start = start
        self.say = say
        self.log = self._open_log()

    def _open_log(self):
        from cellarix_launcher import boundedlog
        if not self.request.log_path:
            return None
        log = logfile.open_log(self.request.log_path, words.one_line(self.start.argv), self.say)
        return boundedlog.BoundedLog(log.path, log.fd) if log.regular else None

    def run(self):
        mask = supervise.hold_signals()
        master, slave = os.openpty()
        signal.pthread_sigmask(signal.SIG_BLOCK, [signal.SIGWINCH])
        _copy_size(master)

        def prepare():
            os.setsid()
            fcntl.ioctl(slave, termios.TIOCSCTTY, 0)
            os.dup2(slave, 0)

        child = supervise.start_wine(self.start, slave, mask, prepare)
        os.close(slave)
        orphans.watch(self.start.env["WINEPREFIX"])
        before = _make_raw()
        try:
            self._carry(master, child)
            while child.poll() is None:  # it has closed its terminal, or the window was closed
                child.send(supervise.fetch_signal(None) or 0)
            if self.request.wait:
                from cellarix_launcher import family
                family.wait_for_rest(child, self.start, self.request.uuid, None, self.say)
        finally:
            _restore(before)
        return child.code

    def _carry(self, master, child):
        sources = [0, master]
        while master in sources:
            ended = child.poll() is not None
            number = supervise.fetch_signal(0)
            if number:
                child.send(number)
            if signal.sigtimedwait([signal.SIGWINCH], 0):
                _copy_size(master)
            ready = select.select(sources, [], [], 0.1)[0]
            if ended and master not in ready:
                break  # don't wait for helper processes that keep it open
            for source in ready:
                if not self._move(source, master):
                    sources.remove(source)

    def _move(self, source, master):
        try:
            data = os.read(source, 1 << 14)
            if data and source == master and self.log:
                self.log.write(data)
            if data:
                os.write(master if source == 0 else 1, data)
            return bool(data)
        except OSError:
            return False


def _copy_size(master):
    try:
        fcntl.ioctl(master, termios.TIOCSWINSZ, fcntl.ioctl(0, termios.TIOCGWINSZ, b"\0" * 8))
    except OSError:
        pass


def _restore(before):
    try:
        if before:
            termios.tcsetattr(0, termios.TCSADRAIN, before)
    except termios.error:
        pass


def _make_raw():
    try:
        before = termios.tcgetattr(0)
        tty.setraw(0)
        return before
    except termios.error:
        return None
