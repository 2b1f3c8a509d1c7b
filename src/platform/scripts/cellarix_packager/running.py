"""Whether Wine runs in a bottle: its server holds a lock as long as it does."""

import fcntl
import os
import time


def is_running(bottle_dir):
    try:
        status = os.stat(bottle_dir)
    except OSError:
        return False
    name = f"server-{status.st_dev:x}-{status.st_ino:x}/lock"
    runtime = os.environ.get("XDG_RUNTIME_DIR") or f"/run/user/{os.getuid()}"
    return any(_is_locked(os.path.join(directory, name))
               for directory in (f"/tmp/.wine-{os.getuid()}", os.path.join(runtime, "wine")))


def _is_locked(path):
    try:
        fd = os.open(path, os.O_RDWR | os.O_NOFOLLOW | os.O_CLOEXEC)
    except OSError:
        return False
    try:
        fcntl.lockf(fd, fcntl.LOCK_EX | fcntl.LOCK_NB)
        return False
    except OSError:
        return True
    finally:
        os.close(fd)


def wait_until_idle(bottle_dir, seconds):
    """The server runs on for some seconds after the last program. Returns whether the bottle is idle."""
    end = time.monotonic() + seconds
    while is_running(bottle_dir):
        if time.monotonic() > end:
            return False
        time.sleep(0.1)
    return True
