"""Starts the bottle's wineserver before the first program.

Two programs that start at once without a server (a program and its monitor do) race for the directory of the socket,
and one of them may fail with "please try running the same command again".
"""

import fcntl
import os
import time

START_SECONDS = 10
NOTHING = [(os.POSIX_SPAWN_OPEN, fd, "/dev/null", os.O_RDWR, 0) for fd in (0, 1, 2)]


def start(wineserver, directory, env, say):
    """Returns when the server runs, or has failed to start; Wine then reports the reason."""
    if not wineserver:
        return
    try:
        bottle = os.open(directory, os.O_RDONLY | os.O_DIRECTORY | os.O_CLOEXEC)
    except OSError:
        return
    try:
        fcntl.flock(bottle, fcntl.LOCK_EX)
        # If one is running already, this one exits at once.
        _wait(os.posix_spawn(wineserver, [wineserver], env, file_actions=NOTHING))
    except OSError as error:
        say(f"the wineserver does not start: {error}")
    finally:
        os.close(bottle)


def _wait(pid):
    end = time.monotonic() + START_SECONDS
    try:
        while time.monotonic() < end and os.waitpid(pid, os.WNOHANG)[0] == 0:
            time.sleep(0.001)
    except ChildProcessError:
        pass  # the caller ignores SIGCHLD
