"""Runs a program inside a terminal window that terminal.py has opened, on a pseudo terminal of its own, so that its output
goes to the window and to the log.
"""

import fcntl
import os
import select
import signal
import termios
import tty

from cellarix_launcher import logfile, orphans, supervise, words

TEXTS = {
    "ended": ("The program has ended with exit code {}. Press any key to close this window.",
              "程序已结束（退出码 {}）。按任意键关闭此窗口。"),
}


def _text(key, *values):
    language = os.environ.get("LC_ALL") or os.environ.get("LC_MESSAGES") or os.environ.get("LANG") or ""
    return TEXTS[key][1 if language.startswith("zh") else 0].format(*values)


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
