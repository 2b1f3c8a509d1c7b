"""Opens a terminal window for a console program or for a shell in a bottle.

The outer launcher opens a terminal emulator that runs a second, inner launcher (screen.py). The inner one reports its
process id and the end of the program through a FIFO, since terminal emulators pass on neither.
"""

import glob
import os
import shutil
import signal
import sys
import tempfile
import time

from cellarix_launcher import bottle as bottles
from cellarix_launcher import bottlelock, environment, errors, supervise

EMULATORS = (
    ("x-terminal-emulator", ["-e"]),
    ("gnome-terminal", ["--wait", "--"]),
    ("konsole", ["-e"]),
    ("xfce4-terminal", ["-x"]),
    ("xterm", ["-e"]),
)
SCRIPT, CMDLINE_LIMIT = b"launcher.py", 65536
INSIDE = "_CXB_TERMINAL_INSIDE"  # set for the launcher in the window
START_TIME = 15  # seconds for the first report of the inner launcher after the emulator has detached
# A terminal server starts its windows with its own environment, so these variables are passed as arguments.
INHERITED = ("WINE", "_CXB_", "GIO_LAUNCHED_", "ATTACH_", "XDG_", "LC_", "LANG", "HOME", "PATH", "DISPLAY",
             "XAUTHORITY", "WAYLAND_DISPLAY", "DBUS_SESSION_BUS_ADDRESS", "DXVK_", "VKD3D_", "MESA_", "__GL", "DRI_PRIME")


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
    """Opens a shell for the bottle: WINEPREFIX is set, and `wine` is the bottle's. Nobody packs or upgrades the bottle until
    the shell ends."""
    lock = _shared_lock(name)
    if os.environ.get(INSIDE):
        return _run_shell()
    bottle = bottles.load_bottle(name, os.environ)
    wine = environment.find_wine(bottle, os.environ)
    env = environment.wine_environment(bottle, os.environ, "", None)
    env["PATH"] = os.path.dirname(wine) + ":" + env.get("PATH", "/usr/bin:/bin")
    emulator = find_emulator()
    if emulator is None:
        raise errors.LaunchError(errors.NO_PROGRAM, "no terminal emulator is installed; install xterm")
    argv = _command(emulator, env | {INSIDE: "1"}, [f"SHELL={_shell()}", os.path.realpath(sys.argv[0]), "terminal", name])
    mask = supervise.hold_signals()
    child = supervise.start_wine(supervise.Start(argv, env, ""), -1, mask)
    while child.poll() is None:
        number = supervise.fetch_signal(None)
        if number:
            child.send(number)
    lock.release()
    return child.code


def is_open(name):
    """Whether a shell for the bottle is open. It has no claim, since it does not prevent installations."""
    words = [SCRIPT, b"terminal", os.fsencode(name)]
    for path in glob.iglob("/proc/[0-9]*/cmdline"):
        try:
            with open(path, "rb") as file:
                script, *rest = file.read(CMDLINE_LIMIT).split(b"\0")[-4:-1]
        except (OSError, ValueError):
            continue  # it has ended, or is of the kernel
        if [os.path.basename(script), *rest] == words:
            return True
    return False


def _shared_lock(name):
    lock = bottlelock.BottleLock()
    directory = bottles.bottle_directory(name, os.environ)
    if directory and not lock.acquire(directory, bottlelock.SHARED):
        raise errors.LaunchError(errors.BUSY, "The bottle is being packed or upgraded. Try again when that is done.",
                                 "bottle-busy")
    return lock


def _shell():
    shell = os.environ.get("SHELL", "")
    return shell if shell.startswith("/") and os.access(shell, os.X_OK) else "/bin/sh"


def _run_shell():
    """In the window. What the shell starts does not inherit the lock: it would have it for as long as it runs."""
    prefix = os.environ["WINEPREFIX"]
    drive = os.path.join(prefix, "drive_c")
    env = {name: value for name, value in os.environ.items() if name != INSIDE}
    mask = supervise.hold_signals()
    child = supervise.start_wine(supervise.Start([_shell()], env, drive if os.path.isdir(drive) else prefix), -1, mask,
                                 lambda: None)  # in the session of the window
    while child.poll() is None:
        number = supervise.fetch_signal(None)
        if number in (signal.SIGHUP, signal.SIGTERM):  # others of a terminal go to the shell by themselves
            os.kill(child.pid, number)
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
