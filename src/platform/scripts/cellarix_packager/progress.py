"""Shows how far the making or upgrading of a user's bottle is: in a window if there is a display, else as lines.

The window is cellarix-bottle-progress of the application, which is started only when the work takes longer than a
moment. It reads "::progress:: N" and ends with its input.
"""

import os
import subprocess
import sys
import time

from cellarix_packager.errors import PackageError

QUIET_SECONDS = 0.5
INTERVAL = 0.1
PATIENCE_SECONDS = 5  # for a window that does not answer
LINE_STEP = 10  # percent
CANCELLED = 3  # exit code of the window
MAKE, UPDATE = "make", "update"


class Progress:
    """A context. Called with the amount that was done, in bytes; raises the error "cancelled" once the user cancels."""

    def __init__(self, command, work, total, environ):
        """`command` starts the window, without `work`."""
        self.command = [*command, work]
        self.has_display = bool(environ.get("DISPLAY") or environ.get("WAYLAND_DISPLAY"))
        self.total = max(total, 1)
        self.done = 0
        self.told = 0
        self.process = None
        self.next = time.monotonic() + QUIET_SECONDS

    def __enter__(self):
        return self

    def __exit__(self, kind, *_):
        if self.process:
            self.process.stdin.close()
            try:
                self.process.wait(PATIENCE_SECONDS)
            except subprocess.TimeoutExpired:
                self.process.kill()
                self.process.wait()
            if kind is None:
                self._check()  # the user may have cancelled in the last moment

    def _check(self):
        if self.process and self.process.poll() == CANCELLED:
            raise PackageError("The setup was cancelled.", "cancelled")

    def __call__(self, amount):
        self.done += amount
        now = time.monotonic()
        if now < self.next:
            return
        self.next = now + INTERVAL
        if self.has_display and not self.process:
            self._open()
        self._check()
        percent = min(100 * self.done / self.total, 100)
        if self.has_display and self.process and self.process.poll() is None:
            self._write(f"::progress:: {percent:.1f}\n")
        elif percent >= self.told + LINE_STEP:
            self.told = percent
            print(f"{percent:.0f} %", file=sys.stderr)

    def _open(self):
        try:
            self.process = subprocess.Popen(self.command, stdin=subprocess.PIPE, stdout=subprocess.DEVNULL, bufsize=0)
            os.set_blocking(self.process.stdin.fileno(), False)
        except OSError as error:
            self.has_display = False
            print(f"{self.command[0]}: {error.strerror}", file=sys.stderr)

    def _write(self, line):
        try:
            self.process.stdin.write(line.encode())
        except (BlockingIOError, BrokenPipeError):
            pass  # a window that does not answer, or has just been closed
